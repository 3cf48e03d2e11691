#include "platform/x11/grabs/FocusableWindows.h"

#include "platform/x11/windows/FocusedWindow.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::x11 {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(FocusableWindowsTest, TheFocusedOneIsToldApart) {
    const test::VirtualDisplay display;
    test::XClient client(display.name());
    const FocusableWindows focusable(client.connection());
    EXPECT_THAT(focusable.read().windows, IsEmpty());
    EXPECT_EQ(focusable.read().focused, XCB_WINDOW_NONE);
    test::FocusedWindow window(display.name());
    EXPECT_THAT(focusable.read().windows, ElementsAre(window.window()));
    EXPECT_EQ(focusable.read().focused, window.window());
}

} // namespace

} // namespace hollowfernpike::x11
