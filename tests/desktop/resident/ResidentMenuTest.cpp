#include "desktop/resident/Resident.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

using ResidentMenuTest = ResidentTest;

TEST_F(ResidentMenuTest, IsJapaneseAtFirst) {
    startOnHost();
    EXPECT_THAT(menu.labels(), ElementsAre("ショートカット管理", "ショートカットをエクスポート...",
                                           "ショートカットをインポート...", "", "言語 / Language",
                                           "日本語", "English", "ログイン時に起動", "", "終了"));
    EXPECT_TRUE(menu.entry("日本語").isOn);
    EXPECT_FALSE(menu.entry("English").isOn);
    EXPECT_FALSE(menu.entry("ログイン時に起動").isOn);
}

TEST_F(ResidentMenuTest, IsJapaneseWhateverTheSystemSpeaks) {
    menu.startHost();
    story.launchUtility({{"LC_ALL", "en_US.UTF-8"},
                         {"LC_MESSAGES", "en_US.UTF-8"},
                         {"LANG", "en_US.UTF-8"},
                         {"LANGUAGE", "en_US:en"}});
    ASSERT_TRUE(menu.showsItem()) << story.utility().errors();
    EXPECT_EQ(menu.labels().front(), "ショートカット管理");
    EXPECT_TRUE(menu.entry("日本語").isOn);
}

TEST_F(ResidentMenuTest, TheLanguageSwitchesForGoodWithItsMark) {
    startOnHost();
    menu.choose("English");
    ASSERT_TRUE(menu.becomes("English", true));
    EXPECT_THAT(menu.labels(),
                ElementsAre("Manage Shortcuts", "Export Shortcuts...", "Import Shortcuts...", "",
                            "言語 / Language", "日本語", "English", "Launch at Login", "", "Quit"));
    EXPECT_FALSE(menu.entry("日本語").isOn);
    EXPECT_THAT(contentsOf(resident.configuration("app.hollowfernpike.Hollowfernpike.conf")),
                HasSubstr("AppLanguage=en"));

    menu.choose("日本語");
    ASSERT_TRUE(menu.becomes("日本語", true));
    EXPECT_EQ(menu.labels().front(), "ショートカット管理");
}

TEST_F(ResidentMenuTest, ManageShortcutsShowsOneWindowBesideTheTaskBar) {
    startOnHost();
    menu.choose("ショートカット管理");
    ASSERT_TRUE(resident.shows(japaneseTitle));
    const auto window = resident.window();
    EXPECT_TRUE(story.isActive(window));
    EXPECT_FALSE(story.pager.isInTaskBar(window));

    auto& front = story.open("Front");
    ASSERT_TRUE(story.getsKeys(front));
    menu.choose("ショートカット管理");
    EXPECT_TRUE(story.isActive(window));
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(ResidentMenuTest, ClosingTheWindowLeavesTheUtilityRunning) {
    startOnHost();
    menu.choose("ショートカット管理");
    ASSERT_TRUE(resident.shows(japaneseTitle));
    story.pager.close(resident.window());
    ASSERT_TRUE(waitUntil([&] { return resident.titles().empty(); }));
    EXPECT_TRUE(story.areLive());
    menu.choose("ショートカット管理");
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(ResidentMenuTest, TheOpenWindowFollowsTheLanguage) {
    startOnHost();
    menu.choose("ショートカット管理");
    ASSERT_TRUE(resident.shows(japaneseTitle));
    menu.choose("English");
    EXPECT_TRUE(resident.shows(englishTitle));
}

TEST_F(ResidentMenuTest, LaunchAtLoginComesAndGoes) {
    startOnHost();
    const auto file = resident.configuration("autostart/app.hollowfernpike.Hollowfernpike.desktop");
    menu.choose("ログイン時に起動");
    ASSERT_TRUE(menu.becomes("ログイン時に起動", true));
    EXPECT_THAT(contentsOf(file), HasSubstr(HFP_PROGRAM));
    menu.choose("ログイン時に起動");
    ASSERT_TRUE(menu.becomes("ログイン時に起動", false));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ResidentMenuTest, AFailedChangeOfTheLoginItemIsLoggedAndLeavesTheMark) {
    std::filesystem::create_directories(resident.configuration(""));
    std::filesystem::create_symlink("/nowhere/at/all", resident.configuration("autostart"));
    startOnHost();
    menu.choose("ログイン時に起動");
    EXPECT_TRUE(story.utility().waitForLine("ログイン時起動の設定変更エラー: "));
    EXPECT_FALSE(menu.entry("ログイン時に起動").isOn);
}

TEST_F(ResidentMenuTest, ExportAndImportOpenTheirPanels) {
    startOnHost();
    menu.choose("ショートカットをエクスポート...");
    ASSERT_TRUE(waitUntil([&] { return resident.titles().size() == 1; }));
    EXPECT_TRUE(story.isActive(resident.window()));
    story.keyboard.strike({"ESC"});
    ASSERT_TRUE(waitUntil([&] { return resident.titles().empty(); }));
    menu.choose("ショートカットをインポート...");
    ASSERT_TRUE(waitUntil([&] { return resident.titles().size() == 1; }));
    EXPECT_TRUE(story.isActive(resident.window()));
    story.keyboard.strike({"ESC"});
    EXPECT_TRUE(waitUntil([&] { return resident.titles().empty(); }));
}

TEST_F(ResidentMenuTest, QuitEndsTheProcessAndFreesTheCombinations) {
    startOnHost();
    menu.choose("終了");
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
    XClient successor(story.desktop.display());
    EXPECT_TRUE(successor.grab(story.grabOf(bound)));
}

TEST_F(ResidentMenuTest, QuitDoesNotWaitForAnOpenPanel) {
    startOnHost();
    menu.choose("ショートカットをエクスポート...");
    ASSERT_TRUE(waitUntil([&] { return resident.titles().size() == 1; }));
    menu.choose("終了");
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

TEST_F(ResidentMenuTest, AppearsOnAPanelThatComesFiveSecondsLater) {
    start();
    const auto later = std::chrono::steady_clock::now() + 5s;
    ASSERT_TRUE(waitUntil([&] { return std::chrono::steady_clock::now() >= later; }));
    menu.startHost();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "ショートカット管理");
}

TEST_F(ResidentMenuTest, AppearsAgainWhenThePanelRestarts) {
    startOnHost();
    menu.endPanel();
    menu.startHost();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "ショートカット管理");
}

TEST_F(ResidentMenuTest, AppearsInATrayOfTheOlderKind) {
    start();
    const auto second = resident.startAgain();
    EXPECT_EQ(second->wait(), 0);
    ASSERT_TRUE(resident.shows(japaneseTitle));
    EXPECT_TRUE(story.pager.isInTaskBar(resident.window())) << "nothing else leads back to it";
    menu.startTray();
    EXPECT_TRUE(waitUntil([&] { return !story.pager.isInTaskBar(resident.window()); }));
    menu.endPanel();
    EXPECT_TRUE(waitUntil([&] { return story.pager.isInTaskBar(resident.window()); }));
    menu.startTray();
    EXPECT_TRUE(waitUntil([&] { return !story.pager.isInTaskBar(resident.window()); }));
}

} // namespace
} // namespace hollowfernpike
