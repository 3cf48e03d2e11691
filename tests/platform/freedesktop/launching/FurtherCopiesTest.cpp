#include "platform/freedesktop/LateProgram.h"
#include "platform/freedesktop/launching/WorkspaceTest.h"
#include "support/ChildProcess.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::SizeIs;

class FurtherCopiesTest : public WorkspaceTest {
protected:
    /// Makes a request of its own. Returns the process of the copy that it starts, once that has
    /// reported and shown a window; absent if it starts none, without an error.
    std::optional<pid_t> start(const std::string& path) {
        const auto before = home_.witnesses().size();
        ++feedback_.holds;
        const auto result = open(path);
        EXPECT_FALSE(result.error);
        if (result.processIdentifier) {
            home_.awaitWitnesses(before + 1);
            windows_.show({.process = result.processIdentifier, .owner = {}});
        }
        return result.processIdentifier;
    }

    /// A copy that the test starts instead of the workspace, once it has reported.
    std::unique_ptr<test::ChildProcess> startByHand() {
        home_.addEntry("org.example.tray", home_.witnessNamed("org.example.tray", "stay"));
        const auto before = home_.witnesses().size();
        auto copy = std::make_unique<test::ChildProcess>(std::vector{
            home_.program("org.example.tray"), home_.reports().string(), std::string("stay")});
        home_.awaitWitnesses(before + 1);
        return copy;
    }

    void end(std::optional<pid_t> process) {
        ASSERT_TRUE(process);
        ::kill(*process, SIGKILL);
        EXPECT_TRUE(isGone(*process));
    }
};

TEST_F(FurtherCopiesTest, AProgramThatStaysBesideItsFirstCopyIsStartedTwice) {
    const auto path = home_.addEntry("double", home_.witness("stay"));
    EXPECT_TRUE(start(path));
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
    EXPECT_FALSE(start(path));
    EXPECT_THAT(home_.witnesses(), SizeIs(2));
    EXPECT_THAT(feedback_.ended, SizeIs(feedback_.begun.size() - 2));
    EXPECT_FALSE(windows_.isWatched());
}

TEST_F(FurtherCopiesTest, AProgramWhoseSecondCopyEndedIsStartedAgain) {
    const auto path = home_.addEntry("double", home_.witness("stay"));
    EXPECT_TRUE(start(path));
    for (int round = 0; round < 3; ++round) {
        end(start(path));
    }
}

TEST_F(FurtherCopiesTest, OnceTheFirstCopyHasEndedTheProgramIsTriedAgain) {
    const auto path = home_.addEntry("double", home_.witness("stay"));
    const auto first = start(path);
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
    end(first);
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
}

TEST_F(FurtherCopiesTest, OnceAllCopiesHaveEndedNothingIsRemembered) {
    const auto path = home_.addEntry("double", home_.witness("stay"));
    const auto first = start(path);
    const auto second = start(path);
    end(first);
    end(second);
    EXPECT_TRUE(start(path));
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
}

TEST_F(FurtherCopiesTest, ACopyThatADaemonLeavesBehindCounts) {
    const auto path =
        home_.addEntry("org.example.daemon", home_.witnessNamed("org.example.daemon", "hand-over"));
    for (const std::size_t copies : {1UL, 2UL}) {
        const auto started = start(path);
        ASSERT_TRUE(started);
        EXPECT_TRUE(isGone(*started));
        home_.awaitWitnesses(2 * copies);
    }
    EXPECT_FALSE(start(path));
}

TEST_F(FurtherCopiesTest, CopiesThatOthersStartedBeforeCountAsTheFirst) {
    const test::ChildProcess early(
        {home_.program("org.example.early"), home_.reports().string(), "stay"});
    home_.awaitWitnesses(1);
    const auto path =
        home_.addEntry("org.example.early", home_.witnessNamed("org.example.early", "stay"));
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
}

TEST_F(FurtherCopiesTest, ACopyThatNobodyHasWaitedForHasEndedAllTheSame) {
    test::ChildProcess early(
        {home_.program("org.example.early"), home_.reports().string(), "stay"});
    home_.awaitWitnesses(1);
    const auto path =
        home_.addEntry("org.example.early", home_.witnessNamed("org.example.early", "stay"));
    EXPECT_TRUE(start(path));
    early.signal(SIGKILL);
    ASSERT_TRUE(test::waitUntil([&] { return test::processState(early.pid()) == "Z"; }));
    EXPECT_TRUE(start(path));
}

TEST_F(FurtherCopiesTest, ACopyThatSomebodyElseStartsLaterSaysNothingOfTheProgram) {
    FurtherCopies copies(processes_, std::chrono::seconds{0});
    const auto first = startByHand();
    EXPECT_TRUE(copies.mayStart("org.example.tray"));
    const auto begin = processClock();
    ASSERT_TRUE(test::waitUntil([&] { return processClock() > begin + 1; }));
    const auto theirs = startByHand();
    EXPECT_TRUE(copies.mayStart("org.example.tray"));
    FurtherCopies patient(processes_);
    EXPECT_TRUE(patient.mayStart("org.example.tray"));
    const auto ours = startByHand();
    EXPECT_FALSE(patient.mayStart("org.example.tray"));
}

TEST_F(FurtherCopiesTest, ACopyThatWasStartedBeforeAndIsKnownLaterSaysNothingEither) {
    const auto first = startByHand();
    const test::LateProgram theirs(home_, "org.example.tray");
    FurtherCopies copies(processes_);
    const auto begin = processClock();
    ASSERT_TRUE(test::waitUntil([&] { return processClock() > begin + 1; }));
    EXPECT_TRUE(copies.mayStart("org.example.tray"));
    theirs.begin();
    home_.awaitWitnesses(2);
    ASSERT_TRUE(test::waitUntil(
        [&] { return processes_.applicationOf(theirs.pid()) == "org.example.tray"; }));
    EXPECT_TRUE(copies.mayStart("org.example.tray"));
}

TEST_F(FurtherCopiesTest, ApplicationsDoNotCountForEachOther) {
    const auto one = home_.addEntry("one", home_.witness("stay", "one"));
    const auto other = home_.addEntry("other", home_.witness("stay", "other"));
    for (const auto& path : {one, other, one, other}) {
        EXPECT_TRUE(start(path));
    }
    EXPECT_FALSE(start(one));
    EXPECT_FALSE(start(other));
}

TEST_F(FurtherCopiesTest, WhatIsNotInstalledIsRecognisedToo) {
    const auto path =
        home_.write(home_.path() / "Desktop/my tool.desktop",
                    "[Desktop Entry]\nType=Application\nName=T\nExec=" + home_.witness("stay"));
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    EXPECT_TRUE(start(path));
    EXPECT_TRUE(start(path));
    EXPECT_FALSE(start(path));
}

} // namespace

} // namespace hollowfernpike::freedesktop
