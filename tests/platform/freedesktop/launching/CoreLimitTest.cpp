#include "platform/freedesktop/launching/CoreLimit.h"

#include "platform/freedesktop/launching/Spawn.h"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {
namespace {

constexpr rlim_t someLimit = 4096;

rlimit limitOf(pid_t process) {
    rlimit limit{};
    EXPECT_EQ(::prlimit(process, RLIMIT_CORE, nullptr, &limit), 0);
    return limit;
}

rlimit limitOfNewProcess() {
    const auto process = spawn({.program = "/bin/sleep",
                                .arguments = {"sleep", "60"},
                                .environment = {},
                                .workingDirectory = "/"});
    const auto limit = limitOf(process.number);
    ::kill(process.number, SIGKILL);
    ::waitpid(process.number, nullptr, 0);
    return limit;
}

/// Runs `body` in a process of its own, because core files stay turned off for good. `body` gets
/// the hard limit.
template <class Body>
void inAProcessWithSomeLimit(Body body) {
    const auto run = [&] {
        const auto hardLimit = limitOf(0).rlim_max;
        const rlimit limit{someLimit, hardLimit};
        EXPECT_EQ(::setrlimit(RLIMIT_CORE, &limit), 0);
        body(hardLimit);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(CoreLimitTest, OurselvesLeaveNoCoreFile) {
    inAProcessWithSomeLimit([](rlim_t hardLimit) {
        turnOffCoreFiles();
        EXPECT_EQ(limitOf(0).rlim_cur, 0U);
        EXPECT_EQ(limitOf(0).rlim_max, hardLimit);
    });
}

TEST(CoreLimitTest, WhatWeStartHasTheLimitThatWeWereStartedWith) {
    inAProcessWithSomeLimit([](rlim_t hardLimit) {
        turnOffCoreFiles();
        turnOffCoreFiles();
        const auto limit = limitOfNewProcess();
        EXPECT_EQ(limit.rlim_cur, someLimit);
        EXPECT_EQ(limit.rlim_max, hardLimit);
        EXPECT_EQ(limitOf(0).rlim_cur, 0U) << "ours again";
    });
}

TEST(CoreLimitTest, WithoutTurningThemOffWhatWeStartKeepsTheLimit) {
    inAProcessWithSomeLimit(
        [](rlim_t /*hardLimit*/) { EXPECT_EQ(limitOfNewProcess().rlim_cur, someLimit); });
}

} // namespace
} // namespace hollowfernpike::freedesktop
