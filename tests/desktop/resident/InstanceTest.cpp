#include "desktop/editor/ScreenReader.h"
#include "desktop/resident/Resident.h"
#include "support/Files.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class InstanceTest : public ResidentTest {
protected:
    std::filesystem::path settings() const {
        return resident.configuration("app.hollowfernpike.Hollowfernpike.conf");
    }
    std::filesystem::path oldPreferences() const {
        return resident.configuration("com.local.Hollowfernpike.conf");
    }

    void writeOldPreferences(const std::string& text) {
        std::filesystem::create_directories(resident.configuration(""));
        std::ofstream(oldPreferences()) << text;
    }

    void end() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
    }
};

TEST_F(InstanceTest, ASecondStartShowsTheWindowOfTheFirst) {
    start();
    const auto second = resident.startAgain();
    EXPECT_EQ(second->wait(), 0) << second->errors();
    EXPECT_TRUE(resident.shows(japaneseTitle));
    EXPECT_TRUE(story.isActive(resident.window()));
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(InstanceTest, ASecondStartWithoutTheBusShowsTheWindowOfTheFirst) {
    start();
    const auto second =
        resident.startAgain({}, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
    EXPECT_EQ(second->wait(), 0) << second->errors();
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(InstanceTest, WithoutAnyBusThereIsStillOneInstance) {
    story.bind(bound, story.install("Target"));
    story.writeShortcuts();
    const Environment withoutBus{{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}};
    story.launchUtility(withoutBus);
    ASSERT_TRUE(story.areLive());
    const auto second = resident.startAgain({}, withoutBus);
    EXPECT_EQ(second->wait(), 0) << second->errors();
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(InstanceTest, AStartWithAnotherRuntimeDirectoryFindsTheFirstOnTheBus) {
    start();
    const auto elsewhere = story.desktop.home() / "elsewhere";
    std::filesystem::create_directory(elsewhere);
    std::filesystem::permissions(elsewhere, std::filesystem::perms::owner_all);
    const auto second = resident.startAgain({}, {{"XDG_RUNTIME_DIR", elsewhere.string()}});
    EXPECT_EQ(second->wait(), 0) << second->errors();
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(InstanceTest, LaunchersActivateIt) {
    start();
    resident.call("Activate", {"{'desktop-startup-id': <'launcher_TIME1'>}"});
    EXPECT_TRUE(resident.shows(japaneseTitle));
}

TEST_F(InstanceTest, LaunchersQuitIt) {
    start();
    resident.call("ActivateAction", {"quitApp", "[]", "{}"});
    EXPECT_EQ(story.utility().wait(), 0);
}

TEST_F(InstanceTest, ActionsOfTheDesktopEntryReachTheRunningProgram) {
    start();
    EXPECT_EQ(resident.startAgain({"--action", "importShortcuts"})->wait(), 0);
    ASSERT_TRUE(waitUntil([&] { return resident.titles().size() == 1; }));
    EXPECT_EQ(resident.startAgain({"--action", "quitApp"})->wait(), 0);
    EXPECT_EQ(story.utility().wait(), 0);
}

TEST_F(InstanceTest, QuitWithoutAnInstanceStartsNone) {
    writeOldPreferences("[General]\nAppLanguage=en\n");
    story.bind(bound, story.install("Target"));
    story.writeShortcuts();
    const auto quit = resident.startAgain({"--action", "quitApp"});
    EXPECT_EQ(quit->wait(), 0);
    EXPECT_EQ(quit->output() + quit->errors(), "");
    EXPECT_FALSE(std::filesystem::exists(settings())) << "the first thing that an instance does";
    XClient other(story.desktop.display());
    EXPECT_TRUE(other.grab(story.grabOf(bound)));
}

TEST_F(InstanceTest, AFirstStartFromTheMenuShowsTheWindow) {
    const auto first = resident.startAgain({"--action", "openMainWindow"});
    EXPECT_TRUE(resident.shows(japaneseTitle));
    EXPECT_FALSE(first->hasEnded());
}

TEST_F(InstanceTest, APressByACommandIsCarriedOutAsOneOfTheKeyboard) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    const auto press = resident.startAgain({"--press", "⌃⌥L"});
    EXPECT_EQ(press->wait(), 0) << press->errors();
    EXPECT_TRUE(story.isInFront(target));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(story.brings(target, front, bound)) << "the tap works as before";
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(InstanceTest, APressByACommandThatNothingIsBoundToIsAnError) {
    start();
    const auto press = resident.startAgain({"--press", "Ctrl+Alt+J"});
    EXPECT_EQ(press->wait(), 1);
    EXPECT_THAT(press->errors(), HasSubstr("No application is bound to ⌃⌥J"));
}

TEST_F(InstanceTest, APressByACallOfALauncher) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.startUtility();
    resident.call("ActivateAction", {"press", "[<'⌃⌥L'>]", "{}"});
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(InstanceTest, MisuseIsToldAndStartsNothing) {
    const auto misuse = resident.startAgain({"--frobnicate"});
    EXPECT_EQ(misuse->wait(), 2);
    EXPECT_THAT(misuse->errors(), HasSubstr("--action"));
}

TEST_F(InstanceTest, TheNextOneTakesOverWhenTheFirstIsKilled) {
    start();
    story.utility().signal(SIGKILL);
    ASSERT_TRUE(story.utility().wait());
    story.launchUtility();
    EXPECT_TRUE(story.areLive());
}

class SimultaneousStartsTest : public InstanceTest, public testing::WithParamInterface<int> {};

TEST_P(SimultaneousStartsTest, LeaveOneInstance) {
    story.bind(bound, story.install("Target"));
    story.writeShortcuts();
    const auto one = resident.startAgain();
    const auto other = resident.startAgain();
    ASSERT_TRUE(story.areLive());
    ASSERT_TRUE(waitUntil([&] { return one->hasEnded() != other->hasEnded(); }));
    EXPECT_EQ((one->hasEnded() ? *one : *other).wait(), 0);
    EXPECT_TRUE(resident.shows(japaneseTitle)) << "handed over by the one that came second";
    EXPECT_NE(one->hasEnded(), other->hasEnded());
}

INSTANTIATE_TEST_SUITE_P(TenTimes, SimultaneousStartsTest, testing::Range(1, 11));

constexpr auto oldText = "[General]\nNSWindow%20Frame%20main=0 0 480 400\nAppLanguage=en\n";

TEST_F(InstanceTest, OldPreferencesAreCarriedOverAndStayWhereTheyAre) {
    writeOldPreferences(oldText);
    menu.startHost();
    start();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "Manage Shortcuts");
    EXPECT_THAT(contentsOf(settings()),
                AllOf(HasSubstr("preferencesMigratedFrom=com.local.Hollowfernpike"),
                      HasSubstr("AppLanguage=en"), Not(HasSubstr("NSWindow"))));
    end();
    EXPECT_EQ(contentsOf(oldPreferences()), oldText);
}

TEST_F(InstanceTest, OldPreferencesGiveWayToSettingsOfEveryKindTheCommonOnesIncluded) {
    const auto common = story.desktop.home() / "all";
    writeOldPreferences("Own=old\nCommon=old\nNew=old\n");
    writeFile(settings(), "Own=1, 2\n");
    writeFile(common / settings().filename(), "Common=3, 4\n");
    menu.startHost();
    story.launchUtility({{"XDG_CONFIG_DIRS", common.string()}});
    ASSERT_TRUE(menu.showsItem());
    end();
    EXPECT_THAT(contentsOf(settings()),
                AllOf(HasSubstr("Own=1, 2\n"), HasSubstr("New=old\n"), Not(HasSubstr("Common"))));
}

TEST_F(InstanceTest, OldPreferencesAreCarriedOverOnce) {
    writeOldPreferences(oldText);
    start();
    end();
    const std::string migrated = "[General]\npreferencesMigratedFrom=com.local.Hollowfernpike\n";
    std::ofstream(settings()) << migrated;
    const auto changed = std::string(oldText) + "Another=1\n";
    writeOldPreferences(changed);
    menu.startHost();
    story.launchUtility();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "ショートカット管理");
    end();
    EXPECT_EQ(contentsOf(settings()), migrated);
    EXPECT_EQ(contentsOf(oldPreferences()), changed);
}

TEST_F(InstanceTest, TheToolkitSpeaksTheLanguageCarriedOverFromItsFirstWindow) {
    writeOldPreferences(oldText);
    ScreenReader reader(story.desktop.bus().address());
    const auto first = resident.startAgain({"--action", "exportShortcuts"});
    ASSERT_TRUE(resident.shows("Export Shortcuts"));
    EXPECT_NO_THROW(reader.find("push button", "Cancel"));
}

} // namespace
} // namespace hollowfernpike
