#include "desktop/resident/Resident.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::Not;

using InstanceTest = ResidentTest;

TEST_F(InstanceTest, ASecondStartShowsTheWindowOfTheFirst) {
    start();
    const auto second = resident.startAgain();
    EXPECT_EQ(second->wait(), 0) << second->errors();
    EXPECT_TRUE(resident.shows(japaneseTitle));
    EXPECT_TRUE(story.isActive(resident.window()));
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(InstanceTest, ASecondStartWithoutTheBusDoesAsWell) {
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
    EXPECT_EQ(resident.startAgain({"--action", "quitApp"})->wait(), 0);
}

TEST_F(InstanceTest, AFirstStartFromTheMenuShowsTheWindow) {
    const auto first = resident.startAgain({"--action", "openMainWindow"});
    EXPECT_TRUE(resident.shows(japaneseTitle));
    EXPECT_FALSE(first->hasEnded());
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

TEST_F(InstanceTest, OldPreferencesAreCarriedOverOnce) {
    std::filesystem::create_directories(resident.configuration(""));
    std::ofstream(resident.configuration("com.local.Hollowfernpike.conf"))
        << "[General]\nAppLanguage=en\nNSWindow%20Frame%20main=0 0 480 400\n";
    menu.startHost();
    start();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "Manage Shortcuts");
    const auto file = resident.configuration("app.hollowfernpike.Hollowfernpike.conf");
    EXPECT_THAT(Resident::contents(file),
                HasSubstr("preferencesMigratedFrom=com.local.Hollowfernpike"));
    EXPECT_THAT(Resident::contents(file), Not(HasSubstr("NSWindow")));

    menu.choose("日本語");
    ASSERT_TRUE(menu.becomes("日本語", true));
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0);
    menu.startHost();
    story.launchUtility();
    ASSERT_TRUE(menu.showsItem());
    EXPECT_EQ(menu.labels().front(), "ショートカット管理") << "carried over once";
}

} // namespace
} // namespace hollowfernpike
