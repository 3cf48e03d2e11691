#include "platform/x11/KeyTapTest.h"

namespace hollowfernpike::test {

namespace {

class ActiveTapTest : public KeyTapTest {};

TEST_F(ActiveTapTest, reportsACombinationOfInterest) {
    auto tap = makeActiveTap();
    tap->watch({combination(7, flags::control)});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses[0].keyCode, 7);
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::nonCoalesced);
    EXPECT_NE(userTime_.time(), 0U);
    EXPECT_EQ(userTime_.press(), 1U);
}

} // namespace

} // namespace hollowfernpike::test
