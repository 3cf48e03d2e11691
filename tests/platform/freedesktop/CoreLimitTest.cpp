#include "platform/freedesktop/CoreLimit.h"

#include "platform/freedesktop/Spawn.h"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace hollowfernpike::freedesktop {
namespace {

constexpr rlim_t someLimit = 4096;

rlimit limitOf(pid_t process) {
    rlimit limit{};
    EXPECT_EQ(::prlimit(process, RLIMIT_CORE, nullptr, &limit), 0);
    return limit;
}

class CoreLimitTest : public testing::Test {
protected:
    CoreLimitTest() {
        hardLimit = limitOf(0).rlim_max;
        const rlimit limit{someLimit, hardLimit};
        EXPECT_EQ(::setrlimit(RLIMIT_CORE, &limit), 0);
    }

    rlimit limitOfNewProcess() {
        const auto process = spawn({.program = "/bin/sleep",
                                    .arguments = {"sleep", "60"},
                                    .environment = {},
                                    .workingDirectory = "/",
                                    .ownNumberVariable = {}});
        const auto limit = limitOf(process.number);
        ::kill(process.number, SIGKILL);
        ::waitpid(process.number, nullptr, 0);
        return limit;
    }

    rlim_t hardLimit = 0;
};

TEST_F(CoreLimitTest, OurselvesLeaveNoCoreFile) {
    turnOffCoreFiles();
    EXPECT_EQ(limitOf(0).rlim_cur, 0U);
    EXPECT_EQ(limitOf(0).rlim_max, hardLimit);
}

TEST_F(CoreLimitTest, WhatWeStartHasTheLimitThatWeWereStartedWith) {
    turnOffCoreFiles();
    turnOffCoreFiles();
    const auto limit = limitOfNewProcess();
    EXPECT_EQ(limit.rlim_cur, someLimit);
    EXPECT_EQ(limit.rlim_max, hardLimit);
}

TEST_F(CoreLimitTest, NothingIsGivenBackThatWasNotTaken) {
    EXPECT_EQ(limitOfNewProcess().rlim_cur, someLimit);
}

} // namespace
} // namespace hollowfernpike::freedesktop
