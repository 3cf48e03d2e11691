#include "ui/window/BindingsPrompt.h"

#include "app/Language.h"
#include "support/fakes/FakeServices.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gmock/gmock.h>

#include <stdexcept>
#include <vector>

namespace hollowfernpike {

namespace {

using namespace test;
using testing::SizeIs;

class BindingsPromptTest : public testing::Test {
protected:
    static std::vector<QDialog*> windows() {
        std::vector<QDialog*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QDialog*>(widget)) {
                found.push_back(dialog);
            }
        }
        return found;
    }

    static QDialog& window() {
        EXPECT_THAT(windows(), SizeIs(1));
        return *windows().at(0);
    }

    static QPlainTextEdit& lines() { return *window().findChild<QPlainTextEdit*>(); }

    static QPushButton& button(const QString& title) {
        for (auto* each : window().findChildren<QPushButton*>()) {
            if (each->text() == title) {
                return *each;
            }
        }
        throw std::invalid_argument(title.toStdString());
    }

    FakeServices services_;
    int copied_ = 0;
    const platform::ManualBindings two_{{"ここに", "Here"}, {"bind a <b>", "bind c"}};
    BindingsPrompt prompt_{[this] { ++copied_; }};
};

TEST_F(BindingsPromptTest, ShowsTheLinesAsTheyAreInTheLanguageOfTheProgram) {
    EXPECT_FALSE(prompt_.isOpen());
    prompt_.show(two_);
    EXPECT_TRUE(prompt_.isOpen());
    EXPECT_FALSE(window().isModal());
    EXPECT_EQ(lines().toPlainText(), "bind a <b>\nbind c");
    EXPECT_TRUE(lines().isReadOnly());
    EXPECT_EQ(window().accessibleName(), "ショートカットキーをデスクトップに設定してください");
    EXPECT_EQ(window().accessibleDescription(), "ここに");
    for (const QLabel* label : window().findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    Language::setCurrent(Language::english);
    prompt_.show(two_);
    EXPECT_EQ(window().accessibleName(),
              "Shortcuts have to be bound in the settings of your desktop");
    EXPECT_EQ(window().accessibleDescription(), "Here");
    EXPECT_EQ(lines().accessibleName(), "Lines for the settings");
    EXPECT_TRUE(button("Copy Lines").isVisible());
}

TEST_F(BindingsPromptTest, CopiesTheLinesThatAreShown) {
    prompt_.show(two_);
    prompt_.show({two_.reason, {"bind d"}});
    button("行をコピー").click();
    EXPECT_EQ(QApplication::clipboard()->text(), "bind d\n");
    EXPECT_EQ(copied_, 1);
    EXPECT_TRUE(prompt_.isOpen()) << "who copies may want to read where the lines belong";
}

TEST_F(BindingsPromptTest, OkAndCloseEndIt) {
    prompt_.show(two_);
    button("OK").click();
    EXPECT_FALSE(prompt_.isOpen());
    EXPECT_EQ(copied_, 0);
    prompt_.show(two_);
    EXPECT_TRUE(prompt_.isOpen());
    prompt_.close();
    EXPECT_FALSE(prompt_.isOpen());
}

} // namespace

} // namespace hollowfernpike
