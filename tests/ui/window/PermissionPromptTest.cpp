#include "ui/window/PermissionPrompt.h"
#include "app/Language.h"
#include "support/fakes/FakeServices.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <gmock/gmock.h>

#include <stdexcept>
#include <vector>

namespace hollowfernpike {

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using namespace test;

class PermissionPromptTest : public testing::Test {
protected:
    static std::vector<QMessageBox*> windows() {
        std::vector<QMessageBox*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget)) {
                found.push_back(box);
            }
        }
        return found;
    }

    static QMessageBox& window() {
        EXPECT_THAT(windows(), SizeIs(1));
        return *windows().at(0);
    }

    static QPushButton& button(const QString& title) {
        for (QAbstractButton* each : window().buttons()) {
            if (each->text() == title) {
                return *qobject_cast<QPushButton*>(each);
            }
        }
        throw std::invalid_argument(title.toStdString());
    }

    FakeServices services_;
    const platform::Distrust missing_{{"許可がありません", "There is no permission"}};
    PermissionPrompt prompt_;
};

TEST_F(PermissionPromptTest, SaysWhatIsMissingInTheLanguageOfTheProgram) {
    prompt_.show(missing_);
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().text(), "ショートカットキーを検出できません");
    EXPECT_EQ(window().informativeText(), "許可がありません");
    EXPECT_TRUE(button("終了").isVisible());
    EXPECT_TRUE(button("OK").isVisible());
}

TEST_F(PermissionPromptTest, AnOpenWindowTakesUpANewLanguageWithTheNextQuestion) {
    prompt_.show(missing_);
    Language::setCurrent(Language::english);
    prompt_.show(missing_);
    EXPECT_EQ(window().text(), "Shortcuts cannot be seen");
    EXPECT_EQ(window().informativeText(), "There is no permission");
    EXPECT_TRUE(button("Quit").isVisible());
}

TEST_F(PermissionPromptTest, QuestionsDoNotPileUpWindows) {
    for (int question = 0; question < 5; ++question) {
        prompt_.show(missing_);
    }
    EXPECT_THAT(windows(), SizeIs(1));
}

TEST_F(PermissionPromptTest, HoldsUpNobody) {
    prompt_.show(missing_);
    EXPECT_FALSE(window().isModal());
}

TEST_F(PermissionPromptTest, ComesWithTheKeysOnceAndThenLeavesThemWhereTheyAre) {
    prompt_.show(missing_);
    EXPECT_FALSE(window().testAttribute(Qt::WA_ShowWithoutActivating));
    button("OK").click();
    ASSERT_FALSE(window().isVisible());
    prompt_.show(missing_);
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(window().testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(PermissionPromptTest, AnotherProblemChangesTheTextOfTheOpenWindow) {
    prompt_.show(missing_);
    prompt_.show({{"別の問題", "Another problem"}});
    EXPECT_EQ(window().informativeText(), "別の問題");
}

TEST_F(PermissionPromptTest, IsWhatAssistiveTechnologyReads) {
    prompt_.show(missing_);
    EXPECT_EQ(window().accessibleName(), "ショートカットキーを検出できません");
    EXPECT_EQ(window().accessibleDescription(), "許可がありません");
    prompt_.show({{"別の問題", "Another problem"}});
    EXPECT_EQ(window().accessibleDescription(), "別の問題");
}

TEST_F(PermissionPromptTest, ShowsMarkupAsItIs) {
    prompt_.show({{"<b>太字</b>", "<b>bold</b>"}});
    for (const QLabel* label : window().findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
}

TEST_F(PermissionPromptTest, AnOpenWindowMakesRoomForALongerText) {
    prompt_.show({{"いいえ", "No"}});
    const int narrow = window().width();
    const std::string sentence(40, 'w');
    prompt_.show({{sentence + ' ' + sentence, sentence}});
    const auto& explanation = *window().findChild<QLabel*>("qt_msgbox_informativelabel");
    EXPECT_GT(window().width(), narrow);
    EXPECT_GE(explanation.width(), explanation.minimumWidth());
    prompt_.show({{"いいえ", "No"}});
    EXPECT_EQ(window().width(), narrow);
}

TEST_F(PermissionPromptTest, ALongPathIsShownToItsEnd) {
    const std::string path = "/" + std::string(2000, 'x');
    prompt_.show({{path, path}});
    const auto& explanation = *window().findChild<QLabel*>("qt_msgbox_informativelabel");
    const auto metrics = explanation.fontMetrics();
    const int lines = explanation.height() / metrics.height();
    EXPECT_GE(lines * explanation.width(), metrics.horizontalAdvance(QString::fromStdString(path)));
}

TEST_F(PermissionPromptTest, OffersWhatTheProgramCanDo) {
    int applied = 0;
    const platform::Distrust curable{missing_.reason,
                                     platform::TrustRemedy{.japanese = "許可する",
                                                           .english = "Permit",
                                                           .apply = [&] { ++applied; }}};
    prompt_.show(curable);
    button("許可する").click();
    EXPECT_EQ(applied, 1);
    EXPECT_TRUE(window().isVisible()) << "as long as the program is not trusted";
    Language::setCurrent(Language::english);
    prompt_.show(curable);
    button("Permit").click();
    EXPECT_EQ(applied, 2);
    prompt_.show(missing_);
    EXPECT_FALSE(button("Permit").isVisible());
}

TEST_F(PermissionPromptTest, TellsWhyTheProgramCouldNotDoIt) {
    prompt_.show({missing_.reason,
                  platform::TrustRemedy{.japanese = "許可する", .english = "Permit", .apply = [] {
                                            throw platform::LocalizedError("満杯です",
                                                                           "The disk is full");
                                        }}});
    auto& box = window();
    button("許可する").click();
    std::vector<QString> explanations;
    for (const auto* const each : windows()) {
        explanations.push_back(each->informativeText());
    }
    EXPECT_THAT(explanations, Contains(QString("満杯です")));
    EXPECT_TRUE(box.isVisible());
}

TEST_F(PermissionPromptTest, OnlyQuitEndsTheProgram) {
    prompt_.show(missing_);
    button("OK").click();
    EXPECT_THAT(services_.log.calls(), Not(Contains("application.terminate")));
    prompt_.show(missing_);
    button("終了").click();
    EXPECT_THAT(services_.log.calls(), Contains("application.terminate"));
}

TEST_F(PermissionPromptTest, EscapeAndReturnMeanOk) {
    prompt_.show(missing_);
    EXPECT_EQ(window().defaultButton(), &button("OK"));
    EXPECT_EQ(window().escapeButton(), &button("OK"));
}

TEST_F(PermissionPromptTest, IsGoneOnceThereIsPermission) {
    prompt_.show(missing_);
    prompt_.close();
    EXPECT_THAT(windows(), IsEmpty());
    prompt_.close();
}

} // namespace

} // namespace hollowfernpike
