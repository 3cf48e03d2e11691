#include "platform/qt/MainQueue.h"

#include "platform/qt/QtEventLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

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

} // namespace
} // namespace hollowfernpike
