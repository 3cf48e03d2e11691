#include "platform/freedesktop/launching/WorkspaceTest.h"
#include "platform/freedesktop/owners/ProcessFacts.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LaunchesUnderWayTest : public WorkspaceTest {
protected:
    void expectBroughtForward(pid_t process) {
        EXPECT_THAT(log_.calls(), ElementsAre("windows.bringToFront " + std::to_string(process)));
    }

    /// Of a program that stays.
    const std::string path_ = home_.addEntry("single", home_.witness("stay"));
};

TEST_F(LaunchesUnderWayTest, ASecondRequestJoinsTheLaunchUnderWay) {
    const auto first = launched(path_);
    for (int press = 0; press < 30; ++press) {
        EXPECT_EQ(launched(path_), first);
    }
    launched(home_.addEntry("fence", home_.witness("stay")));
    EXPECT_THAT(home_.awaitWitnesses(2), SizeIs(2));
    EXPECT_THAT(feedback_.begun, SizeIs(2));
}

TEST_F(LaunchesUnderWayTest, ARepeatAndALaterRequestJoinTheLaunchUnderWayAlike) {
    const auto first = launched(path_);
    EXPECT_EQ(launched(path_), first);
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, ARequestByAnotherPathToTheSameFileJoinsToo) {
    const auto link = home_.path() / "link.desktop";
    std::filesystem::create_symlink(path_, link);
    EXPECT_EQ(launched(path_), launched(link.string()));
}

TEST_F(LaunchesUnderWayTest, OnceTheProcessShowsAWindowTheNextRequestStartsAnother) {
    const auto first = launched(path_);
    EXPECT_TRUE(windows_.isWatched());
    windows_.show({.process = first, .owner = {}});
    EXPECT_FALSE(windows_.isWatched());
    ++feedback_.holds;
    EXPECT_NE(launched(path_), first);
    EXPECT_THAT(feedback_.ended, IsEmpty());
}

TEST_F(LaunchesUnderWayTest, AWindowThatIsThereBeforeAnybodyWatchesEndsTheLaunchToo) {
    std::optional<std::int32_t> first;
    workspace_.openApplication(path_, {.activates = true}, [&](const auto& result) {
        first = result.processIdentifier;
        windows_.show({.process = first, .owner = {}});
    });
    ASSERT_TRUE(first);
    EXPECT_FALSE(windows_.isWatched());
    windows_.closeAll();
    ++feedback_.holds;
    EXPECT_NE(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, AnUnannouncedWindowIsSeenWithTheNextRequest) {
    const auto first = launched(path_);
    windows_.showSilently({.process = first, .owner = {}});
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
    EXPECT_EQ(launched(path_), first);
    expectBroughtForward(first);
    ++feedback_.holds;
    EXPECT_NE(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, AnUnannouncedWindowAnswersARequestWithoutAHold) {
    feedback_.holds = 0;
    const auto first = launched(path_);
    windows_.showSilently({.process = first, .owner = {}});
    EXPECT_EQ(launched(path_), first);
    EXPECT_FALSE(windows_.isWatched());
}

TEST_F(LaunchesUnderWayTest, AnUnannouncedWindowIsSeenWhenThePatienceEnds) {
    const auto first = launched(path_);
    EXPECT_EQ(launched(path_), first);
    windows_.showSilently({.process = first, .owner = {}});
    queue_.advance(LaunchesUnderWay::limit);
    EXPECT_FALSE(windows_.isWatched());
    EXPECT_THAT(feedback_.ended, IsEmpty()) << "the application has taken its notice back";
    EXPECT_THAT(log_.calls(), IsEmpty()) << "the user may be elsewhere by now";
    windows_.closeAll();
    ++feedback_.holds;
    EXPECT_NE(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, TheSameHoldStartsNothingMoreOnceTheWindowWasShownAndClosed) {
    const auto first = launched(path_);
    windows_.show({.process = first, .owner = {}});
    windows_.closeAll();
    EXPECT_EQ(launched(path_), first);
    EXPECT_THAT(feedback_.begun, SizeIs(1));
}

TEST_F(LaunchesUnderWayTest, AWindowThatWasAskedForOnceIsLeftToTheDesktop) {
    const auto first = launched(path_);
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

TEST_F(LaunchesUnderWayTest, AWindowThatMayHaveOpenedBehindIsBroughtForward) {
    feedback_.opensBehind = true;
    const auto first = launched(path_);
    windows_.show({.process = first, .owner = {}});
    expectBroughtForward(first);
}

TEST_F(LaunchesUnderWayTest, OneThatMayHaveOpenedBehindStaysThereOnceTheUserHasAskedForMore) {
    feedback_.opensBehind = true;
    const auto first = launched(path_);
    ++feedback_.holds;
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

TEST_F(LaunchesUnderWayTest, AWindowThatWasAskedForAgainMeanwhileIsBroughtForward) {
    const auto first = launched(path_);
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
    EXPECT_THAT(log_.calls(), IsEmpty());
    windows_.show({.process = first, .owner = {}});
    expectBroughtForward(first);
}

TEST_F(LaunchesUnderWayTest, AWindowThatIsStillAskedForByAHeldKeyIsBroughtForward) {
    const auto first = launched(path_);
    EXPECT_EQ(launched(path_), first);
    windows_.show({.process = first, .owner = {}});
    expectBroughtForward(first);
}

TEST_F(LaunchesUnderWayTest, OfAllWindowsTheNewOneIsBroughtForward) {
    const platform::WindowOwner owner{.name = "single", .bundleIdentifier = "single"};
    windows_.show({.process = ::getpid(), .owner = owner});
    const auto first = launched(path_);
    EXPECT_EQ(launched(path_), first);
    windows_.show({.process = first, .owner = owner});
    expectBroughtForward(first);
}

TEST_F(LaunchesUnderWayTest, AnEntryThatIsEditedMeanwhileIsStillTheSame) {
    const auto edit = [this](const std::string& name) {
        std::ofstream(home_.applications() / (name + ".desktop"), std::ios::app) << "NoDisplay=1\n";
    };
    const auto first = launched(path_);
    edit("single");
    EXPECT_EQ(launched(path_), first);

    const auto brief = home_.addEntry("brief", home_.witness("leave"));
    ++feedback_.holds;
    const auto process = launched(brief);
    EXPECT_TRUE(isGone(process));
    edit("brief");
    EXPECT_EQ(launched(brief), process);
}

TEST_F(LaunchesUnderWayTest, AWindowStaysBehindOnceTheUserHasAskedForSomethingElse) {
    const auto first = launched(path_);
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
    ++feedback_.holds;
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

TEST_F(LaunchesUnderWayTest, AWindowOfAnotherApplicationDoesNotEndTheLaunch) {
    const auto first = launched(path_);
    windows_.show({.process = ::getpid(), .owner = {.name = "x", .bundleIdentifier = "x"}});
    windows_.show({.process = std::nullopt, .owner = {}});
    EXPECT_EQ(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, WindowsThatWereThereBeforeDoNotEndTheLaunch) {
    const platform::WindowOwner owner{.name = "single", .bundleIdentifier = "single"};
    windows_.show({.process = std::nullopt, .owner = owner});
    const auto first = launched(path_);
    windows_.show({.process = std::nullopt, .owner = {}});
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
    windows_.show({.process = std::nullopt, .owner = owner});
    EXPECT_FALSE(windows_.isWatched());
}

TEST_F(LaunchesUnderWayTest, AWindowInThePlaceOfOneThatWasThereBeforeEndsTheLaunch) {
    const platform::WindowOwner owner{.name = "single", .bundleIdentifier = "single"};
    windows_.show({.process = std::nullopt, .owner = owner});
    launched(path_);
    windows_.closeAll();
    EXPECT_TRUE(windows_.isWatched());
    windows_.show({.process = std::nullopt, .owner = owner});
    EXPECT_FALSE(windows_.isWatched());
}

TEST_F(LaunchesUnderWayTest, AWindowOfAProgramThatTheLaunchedOneStartedIsThatOfTheLaunch) {
    const auto first = launched(home_.addEntry("wrapper", home_.witness("parent")));
    ++feedback_.holds;
    launched((home_.applications() / "wrapper.desktop").string());
    const auto witnesses = home_.awaitWitnesses(2);
    const auto child = witnesses[witnesses[0].process == first ? 1 : 0].process;
    windows_.show({.process = ::getpid(), .owner = {}});
    EXPECT_TRUE(windows_.isWatched());
    windows_.show({.process = child, .owner = {.name = "x", .bundleIdentifier = "x"}});
    EXPECT_FALSE(windows_.isWatched());
    expectBroughtForward(child);
}

TEST_F(LaunchesUnderWayTest, AWindowOfADescendantIsThatOfTheLaunchHoweverFarDownItIs) {
    const auto script = home_.write(home_.path() / "script", "#!/bin/sh\n\"$@\"\ntrue\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const auto first = launched(home_.addEntry("script", script + ' ' + home_.witness("parent")));
    const auto witnesses = home_.awaitWitnesses(2);
    const auto child = std::ranges::find_if(witnesses, [&](const auto& witness) {
        return processStatus(witness.process)->parent != first;
    });
    ASSERT_NE(child, witnesses.end());
    EXPECT_TRUE(windows_.isWatched());
    windows_.show({.process = child->process, .owner = {}});
    EXPECT_FALSE(windows_.isWatched());
}

TEST_F(LaunchesUnderWayTest, AProgramThatEndsAtOnceIsNotStartedAgainByTheSameHold) {
    const auto path = home_.addEntry("short", home_.witness("leave"));
    const auto first = launched(path);
    EXPECT_TRUE(isGone(first));
    EXPECT_THAT(feedback_.ended, ElementsAre("start-1_TIME4711"));
    EXPECT_FALSE(windows_.isWatched());
    EXPECT_EQ(launched(path), first);
    EXPECT_THAT(feedback_.begun, SizeIs(1));
    ++feedback_.holds;
    EXPECT_NE(launched(path), first);
}

TEST_F(LaunchesUnderWayTest, AProgramThatHasEndedIsStartedByTheNextHoldBeforeItIsReaped) {
    const auto path = home_.addEntry("brief", home_.witness("leave"));
    const auto first = launched(path);
    ASSERT_TRUE(test::waitUntil([=] { return test::processState(first) == "Z"; }));
    ++feedback_.holds;
    const auto second = launched(path);
    EXPECT_NE(second, first);
    EXPECT_THAT(feedback_.ended, SizeIs(1));
    ASSERT_TRUE(test::waitUntil([=] { return test::processState(second) == "Z"; }));
    EXPECT_EQ(launched(path), second);
}

TEST_F(LaunchesUnderWayTest, AHoldThatJoinedStartsNothingMoreEither) {
    const auto first = launched(path_);
    ++feedback_.holds;
    EXPECT_EQ(launched(path_), first);
    ::kill(first, SIGKILL);
    EXPECT_TRUE(isGone(first));
    EXPECT_EQ(launched(path_), first);
    ++feedback_.holds;
    EXPECT_NE(launched(path_), first);
}

TEST_F(LaunchesUnderWayTest, AHoldThatAskedForSomethingElseInBetweenIsOver) {
    const auto path = home_.addEntry("short", home_.witness("leave"));
    const auto first = launched(path);
    EXPECT_TRUE(isGone(first));
    ++feedback_.holds;
    EXPECT_TRUE(isGone(launched(home_.addEntry("other", home_.witness("leave")))));
    EXPECT_NE(launched(path), first);
}

TEST_F(LaunchesUnderWayTest, WhatCannotBeStartedIsTriedOnceForAHold) {
    const auto path = home_.addEntry("lost", home_.witness("stay"), "Path=/no/such/directory\n");
    const auto error = errorOf(path);
    EXPECT_EQ(errorOf(path), error);
    EXPECT_THAT(feedback_.begun, SizeIs(1));
    ++feedback_.holds;
    EXPECT_EQ(errorOf(path), error);
    EXPECT_THAT(feedback_.begun, SizeIs(2));
}

TEST_F(LaunchesUnderWayTest, BeforeTheFirstPressNothingIsHeld) {
    feedback_.holds = 0;
    const auto path = home_.addEntry("short", home_.witness("leave"));
    const auto first = launched(path);
    EXPECT_TRUE(isGone(first));
    EXPECT_NE(launched(path), first);
}

TEST_F(LaunchesUnderWayTest, AProgramThatLivesWithoutAWindowIsStartedOnceHoweverLongItTakes) {
    const auto first = launched(path_);
    for (int minute = 0; minute < 5; ++minute) {
        queue_.advance(std::chrono::minutes{1});
        ++feedback_.holds;
        EXPECT_EQ(launched(path_), first);
    }
    windows_.show({.process = first, .owner = {}});
    expectBroughtForward(first);
    EXPECT_THAT(feedback_.begun, SizeIs(1));
}

TEST_F(LaunchesUnderWayTest, TheNoticeOfAProgramThatTakesLongIsTakenBackOnceAfterTenSeconds) {
    const auto first = launched(path_);
    queue_.advance(std::chrono::milliseconds{9999});
    EXPECT_THAT(feedback_.ended, IsEmpty());
    queue_.advance(std::chrono::milliseconds{1});
    EXPECT_THAT(feedback_.ended, ElementsAre("start-1_TIME4711"));
    ::kill(first, SIGKILL);
    EXPECT_TRUE(isGone(first));
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(LaunchesUnderWayTest, TheClockOfAnEarlierLaunchDoesNotTakeBackTheNoticeOfALaterOne) {
    const auto path = home_.addEntry("short", home_.witness("leave"));
    EXPECT_TRUE(isGone(launched(path)));
    EXPECT_THAT(feedback_.ended, SizeIs(1));
    queue_.advance(std::chrono::milliseconds{9000});
    ++feedback_.holds;
    launched(home_.addEntry("short", home_.witness("stay")));
    queue_.advance(std::chrono::milliseconds{2000});
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(LaunchesUnderWayTest, ARequestFromWithinACompletionJoins) {
    std::optional<std::int32_t> inner;
    std::optional<std::int32_t> outer;
    workspace_.openApplication(path_, {.activates = true}, [&](const auto& result) {
        outer = result.processIdentifier;
        inner = launched(path_);
    });
    ASSERT_TRUE(outer);
    EXPECT_EQ(inner, outer);
}

} // namespace

} // namespace hollowfernpike::freedesktop
