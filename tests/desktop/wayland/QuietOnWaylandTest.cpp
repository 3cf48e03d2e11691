#include "desktop/wayland/Quiet.h"
#include "support/ContextSwitches.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class QuietOnWaylandTest : public Quiet {};

TEST_F(QuietOnWaylandTest, KeysThatNobodyBindsDoNotWakeIt) {
    const auto before = wakeUps();
    const auto key = story.keyboard.keycode("AC09");
    for (int round = 0; round < 10; ++round) {
        for (int times = 0; times < 25; ++times) {
            story.keyboard.strike({"AC09"});
            story.keyboard.strike({"LCTL", "LFSH", "AC09"});
        }
        ASSERT_TRUE(story.getsKeys(front)); // compositors end clients that do not keep up
    }
    EXPECT_EQ(front.downs(key), 500);
    EXPECT_EQ(wakeUps(), before);
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return wakeUps() > before; })) << "this is how it would show";
}

TEST_F(QuietOnWaylandTest, ItSleepsAsLongAsNothingHappens) {
    EXPECT_TRUE(sleepsThrough("10"));
}

} // namespace
} // namespace hollowfernpike
