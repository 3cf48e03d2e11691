#include "platform/qt/ToolkitTexts.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLocale>
#include <QPushButton>

#include <cstdlib>

#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

/// The toolkit reads the environment once, before the application object is made.
bool speakFrench() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"}) {
        ::setenv(variable, "fr_FR.UTF-8", 1);
    }
    return true;
}

const bool speaksFrench = speakFrench();

class ToolkitTextsTest : public testing::Test {
protected:
    static QString cancelText(const QDialogButtonBox& buttons) {
        return buttons.button(QDialogButtonBox::Cancel)->text();
    }

    qt::ToolkitTexts texts_;
};

TEST_F(ToolkitTextsTest, FollowTheLanguage) {
    texts_.setLanguage("ja");
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "キャンセル");
    EXPECT_EQ(QLocale().language(), QLocale::Japanese);
    texts_.setLanguage("en");
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "Cancel");
    EXPECT_EQ(QLocale().language(), QLocale::English);
}

TEST_F(ToolkitTextsTest, WhatIsOpenFollowsAtOnce) {
    texts_.setLanguage("ja");
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    texts_.setLanguage("en");
    QCoreApplication::processEvents();
    EXPECT_EQ(cancelText(buttons), "Cancel");
    texts_.setLanguage("ja");
    QCoreApplication::processEvents();
    EXPECT_EQ(cancelText(buttons), "キャンセル");
}

TEST_F(ToolkitTextsTest, StayEnglishInALanguageThatTheToolkitDoesNotSpeak) {
    texts_.setLanguage("ja");
    texts_.setLanguage("tlh");
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "Cancel");
}

TEST_F(ToolkitTextsTest, TheSystemsLanguageHasNoSay) {
    ASSERT_EQ(QLocale::system().language(), QLocale::French);
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "Cancel");
    texts_.setLanguage("en");
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "Cancel");
    EXPECT_EQ(QLocale().language(), QLocale::English);
    texts_.setLanguage("ja");
    EXPECT_EQ(cancelText(QDialogButtonBox(QDialogButtonBox::Cancel)), "キャンセル");
    EXPECT_EQ(QLocale().language(), QLocale::Japanese);
}

} // namespace

} // namespace hollowfernpike
