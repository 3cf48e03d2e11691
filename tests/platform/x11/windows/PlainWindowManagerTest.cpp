#include "platform/x11/windows/WindowsTest.h"

#include <array>

#include <unistd.h>

namespace hollowfernpike::test {

namespace {

/// A window manager that cannot restack, played by the test.
class PlainWindowManagerTest : public WindowsTest {
protected:
    PlainWindowManagerTest()
        : WindowsTest(""), other_(desktop_.start({HFP_PROBE_WINDOW, "--class", "p,Other"})) {
        const auto line = other_->waitForLine("mapped ").value();
        cover_ = static_cast<xcb_window_t>(std::stoul(line.substr(line.find(' '))));
        for (auto& window : own_) {
            window = observer_.createWindow(observer_.root());
        }
        observer_.setNumbers(observer_.root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW,
                             {own_[0], own_[1], own_[2], cover_});
    }

    std::array<xcb_window_t, 3> own_{}; ///< of this process, from back to front
    std::unique_ptr<ChildProcess> other_;
    xcb_window_t cover_ = XCB_NONE; ///< of another one, above them
};

TEST_F(PlainWindowManagerTest, IsAskedToRaiseByConfiguration) {
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(::getpid()));
    EXPECT_TRUE(waitUntil([&] {
        const auto children = observer_.children(observer_.root());
        const auto top = children.size() - 2;
        return children.at(top) == own_[0] && children.at(top + 1) == own_[1];
    }));
}

TEST_F(PlainWindowManagerTest, LeavesNoErrorsBehindForWindowsThatAreGone) {
    pressKey();
    EXPECT_EQ(names().size(), 4U);
    for (const auto window : own_) {
        observer_.destroyWindow(window);
    }
    EXPECT_TRUE(windows_.bringToFront(::getpid()));
    const x11::Reply<xcb_get_input_focus_reply_t> fence(xcb_get_input_focus_reply(
        connection().get(), xcb_get_input_focus(connection().get()), nullptr));
    EXPECT_EQ(xcb_poll_for_event(connection().get()), nullptr);
}

} // namespace

} // namespace hollowfernpike::test
