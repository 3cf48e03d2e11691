#include "platform/qt/RunLoop.h"

#include "platform/qt/QtEventLoop.h"

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

namespace hollowfernpike {
namespace {

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

} // namespace
} // namespace hollowfernpike
