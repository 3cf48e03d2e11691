#include "desktop/sway/SwayStory.h"
#include "support/ContextSwitches.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class QuietOnSwayTest : public testing::Test {
protected:
    SwayStory story;
    Application& front = story.open("Front");

    void SetUp() override {
        story.bind(bound, front);
        story.bind(another, front);
        story.startUtility();
        // What its start still has to do is done by then.
        ASSERT_TRUE(waitUntil([this] { return sleepsThrough("6"); })) << story.utilityTells();
    }

    std::uint64_t wakeUps() { return timesGoneToSleep(story.utility().pid()); }

    bool sleepsThrough(const std::string& seconds) {
        const auto before = wakeUps();
        return story.desktop.start({"sleep", seconds})->wait() == 0 && wakeUps() == before;
    }
};

TEST_F(QuietOnSwayTest, KeysThatNobodyBindsDoNotWakeIt) {
    const auto before = wakeUps();
    const auto key = story.keyboard.keycode("AC09");
    for (int round = 0; round < 250; ++round) {
        story.keyboard.strike({"AC09"});
        story.keyboard.strike({"LCTL", "LFSH", "AC09"});
    }
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_EQ(front.downs(key), 500);
    EXPECT_EQ(wakeUps(), before);
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return wakeUps() > before; })) << "this is how it would show";
}

TEST_F(QuietOnSwayTest, ItSleepsAsLongAsNothingHappens) {
    EXPECT_TRUE(sleepsThrough("10"));
}

TEST_F(QuietOnSwayTest, WindowsThatComeAndGoDoNotWakeIt) {
    const auto before = wakeUps();
    auto& other = story.open("Other");
    story.pager.close(other.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return other.copies().empty(); }));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(wakeUps(), before);
}

} // namespace
} // namespace hollowfernpike
