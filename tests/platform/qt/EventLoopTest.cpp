#include "platform/qt/MainQueue.h"

#include "platform/qt/QtEventLoop.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/TerminationSignals.h"

#include <array>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace std::chrono_literals;

struct MainQueueTest : testing::Test {
    test::EventLoop loop;
    std::unique_ptr<qt::MainQueue> queue = std::make_unique<qt::MainQueue>();
};

TEST_F(MainQueueTest, RunsNothingInsideTheCallThatSchedules) {
    bool ran = false;
    queue->async([&] { ran = true; });
    EXPECT_FALSE(ran);
    EXPECT_TRUE(loop.runUntil([&] { return ran; }));
}

TEST_F(MainQueueTest, KeepsTheOrder) {
    std::vector<int> order;
    for (int number = 0; number < 5; ++number) {
        queue->async([&order, number] { order.push_back(number); });
    }
    EXPECT_TRUE(loop.runUntil([&] { return order.size() == 5; }));
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4}));
}

TEST_F(MainQueueTest, RunsOnTheMainThreadWhatAnotherThreadHandsOver) {
    std::thread::id ranOn;
    std::thread([&] { queue->async([&] { ranOn = std::this_thread::get_id(); }); }).join();
    EXPECT_TRUE(loop.runUntil([&] { return ranOn != std::thread::id{}; }));
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(MainQueueTest, NeverRunsDelayedWorkEarly) {
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration waited{};
    queue->asyncAfter(200ms, [&] { waited = std::chrono::steady_clock::now() - start; });
    EXPECT_TRUE(loop.runUntil([&] { return waited.count() != 0; }));
    EXPECT_GE(waited, 200ms);
}

TEST_F(MainQueueTest, DropsWaitingWorkWhenDestroyed) {
    const auto captured = std::make_shared<int>(0);
    bool ran = false;
    queue->async([&ran, captured] { ran = true; });
    queue->asyncAfter(1ms, [&ran, captured] { ran = true; });
    queue.reset();

    qt::MainQueue later;
    bool fence = false;
    later.asyncAfter(20ms, [&] { fence = true; });
    EXPECT_TRUE(loop.runUntil([&] { return fence; }));
    EXPECT_FALSE(ran);
    EXPECT_EQ(captured.use_count(), 1);
}

struct RunLoopTest : testing::Test {
    RunLoopTest() { EXPECT_EQ(::pipe(ends.data()), 0); }
    RunLoopTest(const RunLoopTest&) = delete;
    RunLoopTest& operator=(const RunLoopTest&) = delete;
    ~RunLoopTest() override {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    void write() const { EXPECT_EQ(::write(ends[1], "x", 1), 1); }
    void read() const {
        char byte = 0;
        EXPECT_EQ(::read(ends[0], &byte, 1), 1);
    }

    test::EventLoop loop;
    qt::RunLoop runLoop;
    std::array<int, 2> ends{};
};

TEST_F(RunLoopTest, CallsOncePerReadableByte) {
    int calls = 0;
    const auto watch = runLoop.watchReadable(ends[0], [&] {
        read();
        ++calls;
    });
    write();
    EXPECT_TRUE(loop.runUntil([&] { return calls == 1; }));
    write();
    EXPECT_TRUE(loop.runUntil([&] { return calls == 2; }));
}

TEST_F(RunLoopTest, IsSilentAfterTheSubscriptionIsGone) {
    bool called = false;
    auto watch = runLoop.watchReadable(ends[0], [&] { called = true; });
    watch.reset();
    write();

    bool fence = false;
    const auto second = runLoop.watchReadable(ends[0], [&] {
        read();
        fence = true;
    });
    EXPECT_TRUE(loop.runUntil([&] { return fence; }));
    EXPECT_FALSE(called);
}

TEST_F(RunLoopTest, LetsTheHandlerEndItsOwnSubscription) {
    std::unique_ptr<platform::Subscription> watch;
    int calls = 0;
    watch = runLoop.watchReadable(ends[0], [&] {
        ++calls;
        watch.reset();
    });
    write();
    EXPECT_TRUE(loop.runUntil([&] { return watch == nullptr; }));
    EXPECT_EQ(calls, 1);
}

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
