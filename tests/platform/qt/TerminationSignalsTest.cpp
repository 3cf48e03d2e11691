#include "platform/qt/TerminationSignals.h"

#include "platform/qt/QtEventLoop.h"
#include "platform/qt/RunLoop.h"

#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace hollowfernpike {
namespace {

class TerminationSignalsTest : public testing::TestWithParam<int> {
protected:
    qt::TerminationSignals signals;
    test::EventLoop loop;
    qt::RunLoop runLoop;
};

TEST_P(TerminationSignalsTest, ReachesTheMainThreadInsteadOfEndingTheProcess) {
    int calls = 0;
    signals.watch(runLoop, [&] { ++calls; });
    ::kill(::getpid(), GetParam());
    EXPECT_TRUE(loop.runUntil([&] { return calls == 1; }));
}

TEST_P(TerminationSignalsTest, IsKeptUntilSomebodyWatches) {
    ::kill(::getpid(), GetParam());
    bool called = false;
    signals.watch(runLoop, [&] { called = true; });
    EXPECT_TRUE(loop.runUntil([&] { return called; }));
}

INSTANTIATE_TEST_SUITE_P(EachSignal, TerminationSignalsTest,
                         testing::Values(SIGTERM, SIGINT, SIGHUP));

} // namespace
} // namespace hollowfernpike
