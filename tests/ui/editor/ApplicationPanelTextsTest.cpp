#include "ui/editor/ApplicationPanelTest.h"

#include <QLabel>
#include <QToolButton>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using namespace test;

TEST_F(ApplicationPanelTest, EveryControlHasAnAccessibleName) {
    const QDialog& panel = open();
    EXPECT_EQ(searchField(panel).accessibleName(), "検索");
    EXPECT_EQ(list(panel).accessibleName(), "アプリ");
    EXPECT_EQ(searchField(panel).findChild<QToolButton*>()->accessibleName(), "消去");
}

TEST_F(ApplicationPanelTest, TabVisitsFieldListAndButtonsInOrder) {
    const QDialog& panel = open();
    std::vector<std::string> visited;
    for (const QWidget* widget = searchField(panel).nextInFocusChain();
         widget != &searchField(panel); widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisibleTo(&panel)) {
            visited.push_back(widget->objectName().toStdString());
        }
    }
    EXPECT_THAT(visited, ElementsAre("list", "otherButton", "cancelButton", "openButton"));
}

class ApplicationPanelTexts : public EditorInEachLanguage {};

TEST_P(ApplicationPanelTexts, All) {
    QWidget window;
    window.show();
    ApplicationPanel::beginSheet(window, nullptr);
    const auto& panel = *window.findChild<QDialog*>("applicationPanel");
    const bool english = GetParam() == Language::english;
    EXPECT_EQ(panel.windowTitle(), english ? "Select an App" : "アプリを選択");
    EXPECT_EQ(find<QLineEdit>(panel, "searchField").placeholderText(), english ? "Search" : "検索");
    EXPECT_EQ(find<QPushButton>(panel, "otherButton").text(), english ? "Other..." : "その他...");
    EXPECT_EQ(find<QPushButton>(panel, "cancelButton").text(), english ? "Cancel" : "キャンセル");
    EXPECT_EQ(find<QPushButton>(panel, "openButton").text(), english ? "Open" : "開く");
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(),
              english ? "There are no apps." : "アプリがありません");
}

INSTANTIATE_TEST_SUITE_P(, ApplicationPanelTexts,
                         testing::Values(Language::japanese, Language::english), languageName);

} // namespace
} // namespace hollowfernpike
