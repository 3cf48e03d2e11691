#include "ui/Colors.h"

#include "support/TemporaryDirectory.h"
#include "ui/editor/ApplicationPanelTest.h"
#include "ui/icons/ReadIcons.h"

#include <QLabel>
#include <QToolButton>

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using namespace test;

TEST_F(ApplicationPanelTest, ListsInstalledApplicationsByNameInTheInterfacesLanguage) {
    const QDialog& panel = open();
    EXPECT_THAT(rows(panel), ElementsAre("Calculator", "Mail", "Maps", "Terminal"));
    EXPECT_EQ(services_.applicationBundles.askedLanguage, "ja");
}

TEST_F(ApplicationPanelTest, ANameCannotBeWrittenBackwards) {
    const std::string override{'\xE2', '\x80', '\xAE'}; // U+202E
    services_.applicationBundles.installed.resize(1);
    services_.applicationBundles.installed.front().name = override + "gpj.exe";
    EXPECT_THAT(rows(open()), ElementsAre("\\u202egpj.exe"));
}

TEST_F(ApplicationPanelTest, AsksForEnglishNamesInEnglish) {
    speak(Language::english);
    open();
    EXPECT_EQ(services_.applicationBundles.askedLanguage, "en");
}

TEST_F(ApplicationPanelTest, ListsWhatIsInstalledMeanwhileAndKeepsTheSelection) {
    const QDialog& panel = open();
    list(panel).setCurrentIndex(list(panel).model()->index(1, 0));
    install("Clock");
    services_.applicationBundles.change();
    EXPECT_THAT(rows(panel), ElementsAre("Calculator", "Clock", "Mail", "Maps", "Terminal"));
    EXPECT_EQ(current(panel), "Mail");
    std::erase_if(services_.applicationBundles.installed,
                  [](const auto& installed) { return installed.name == "Mail"; });
    services_.applicationBundles.change();
    EXPECT_EQ(current(panel), "Calculator");
}

TEST_F(ApplicationPanelTest, FindsWhatIsInstalledMeanwhile) {
    const QDialog& panel = open();
    searchField(panel).setText("clo");
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    install("Clock");
    services_.applicationBundles.change();
    EXPECT_THAT(rows(panel), ElementsAre("Clock"));
    EXPECT_TRUE(button(panel, "openButton").isEnabled());
}

TEST_F(ApplicationPanelTest, BelongsToItsWindowAlone) {
    const QDialog& panel = open();
    EXPECT_EQ(panel.windowModality(), Qt::WindowModal);
    EXPECT_EQ(panel.parentWidget(), window_.get());
}

TEST_F(ApplicationPanelTest, BeginsInTheSearchFieldWithTheFirstApplicationSelected) {
    const QDialog& panel = open();
    EXPECT_TRUE(searchField(panel).hasFocus() || panel.focusWidget() == &searchField(panel));
    EXPECT_EQ(current(panel), "Calculator");
}

TEST_F(ApplicationPanelTest, TheHintOfTheSearchCanBeReadWhereTheDesktopForgetsIt) {
    QPalette forgetful = darkPalette();
    forgetful.setColor(QPalette::PlaceholderText, forgetful.color(QPalette::Base));
    const ApplicationPalette application(forgetful);
    const QPalette shown = searchField(open()).palette();
    const QColor ground = shown.color(QPalette::Base);
    EXPECT_GE(contrastRatio(laidOver(shown.color(QPalette::PlaceholderText), ground), ground), 4.5);
}

TEST_F(ApplicationPanelTest, FindsWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_M, "m");
    type(searchField(panel), Qt::Key_A, "a");
    EXPECT_EQ(searchField(panel).text(), "ma");
    EXPECT_THAT(rows(panel), ElementsAre("Mail", "Maps"));
    EXPECT_EQ(current(panel), "Mail");
}

TEST_F(ApplicationPanelTest, SaysWhenNothingIsFound) {
    const QDialog& panel = open();
    searchField(panel).setText("nothing of the kind");
    EXPECT_TRUE(find<QLabel>(panel, "emptyLabel").isVisible());
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(), "一致するアプリがありません");
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
    searchField(panel).clear();
    EXPECT_TRUE(list(panel).isVisible());
    EXPECT_TRUE(button(panel, "openButton").isEnabled());
}

TEST_F(ApplicationPanelTest, SaysWhenThereAreNoApplications) {
    services_.applicationBundles.installed.clear();
    const QDialog& panel = open();
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(), "アプリがありません");
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    EXPECT_TRUE(button(panel, "otherButton").isEnabled());
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
}

TEST_F(ApplicationPanelTest, ReadsIconsOnceTheyAreLookedAt) {
    TemporaryDirectory directory;
    const auto file = directory.path() / "icon.png";
    QPixmap red(48, 48);
    red.fill(Qt::red);
    red.save(QString::fromStdString(file.string()));
    services_.applicationBundles.installed.front().icon.imageFile = file.string(); // Terminal
    const QDialog& panel = open();
    const auto icon = [&] {
        return list(panel).model()->index(3, 0).data(Qt::DecorationRole).value<QIcon>();
    };
    const auto shown = [&] {
        return icon().pixmap(QSize(24, 24), 1.0).toImage().pixelColor(12, 12);
    };
    EXPECT_NE(shown(), QColor(Qt::red));
    EXPECT_TRUE(eventually([&] { return shown() == QColor(Qt::red); }));
}

TEST_F(ApplicationPanelTest, IconsOfRowsOutOfSightAreNotReadYet) {
    TemporaryDirectory directory;
    const auto file = directory.path() / "icon.png";
    for (int number = 100; number < 600; ++number) {
        install(std::string("Z").append(std::to_string(number)));
        services_.applicationBundles.installed.back().icon.imageFile = file.string();
    }
    const QDialog& panel = open();
    list(panel).viewport()->grab();
    awaitIcons();
    QPixmap red(48, 48);
    red.fill(Qt::red);
    red.save(QString::fromStdString(file.string())); // only now can it be read
    const QAbstractItemModel& model = *list(panel).model();
    const auto shown = [&](int row) {
        const auto icon = model.index(row, 0).data(Qt::DecorationRole).value<QIcon>();
        return icon.pixmap(QSize(24, 24), 1.0).toImage().pixelColor(12, 12);
    };
    EXPECT_TRUE(eventually([&] { return shown(model.rowCount() - 1) == QColor(Qt::red); }));
    EXPECT_NE(shown(4), QColor(Qt::red)); // in sight from the start, so it was read too early
}

TEST_F(ApplicationPanelTest, LongNamesDoNotWidenTheList) {
    install(std::string(500, 'W'));
    const QDialog& panel = open();
    QListView& view = list(panel);
    EXPECT_LE(view.visualRect(view.model()->index(4, 0)).width(), view.viewport()->width());
}

TEST_F(ApplicationPanelTest, ListsEveryOneOfManyApplications) {
    services_.applicationBundles.installed.clear();
    for (int number = 0; number < 500; ++number) {
        install("Application " + std::to_string(number));
    }
    EXPECT_EQ(rows(open()).size(), 500U);
}

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
