#include "platform/x11/OwnWindows.h"

#include "platform/x11/windows/WindowsTest.h"
#include "support/WindowManagers.h"

#include <cstdlib>
#include <memory>
#include <optional>

#include <xcb/xcb_aux.h>
#include <xcb/xcb_icccm.h>

namespace hollowfernpike::test {

namespace {

class OwnWindowsTest : public WindowsTest, public testing::WithParamInterface<const char*> {
protected:
    OwnWindowsTest() : WindowsTest(GetParam()) {
        ::setenv("DISPLAY", desktop_.display().c_str(), 1);
        toolkit_ = x11::Connection::open();
        own_.emplace(toolkit_->get());
    }

    xcb_connection_t* server() { return toolkit_->get(); }

    /// A window of ours that is not on the screen yet.
    xcb_window_t create() {
        const auto window = xcb_generate_id(server());
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, window, toolkit_->root(), 0, 0, 200, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    /// One that is on the screen and managed.
    xcb_window_t open() {
        const auto window = create();
        xcb_map_window(server(), window);
        xcb_flush(server());
        EXPECT_TRUE(waitUntil([&] { return isManaged(window); }));
        return window;
    }

    bool isManaged(xcb_window_t window) {
        return std::ranges::count(observer_.stacking(), window) == 1;
    }

    bool isLeftOut(xcb_window_t window) {
        return observer_.hasState(window, "_NET_WM_STATE_SKIP_TASKBAR") &&
               observer_.hasState(window, "_NET_WM_STATE_SKIP_PAGER");
    }

    bool isMinimised(xcb_window_t window) {
        return observer_.hasState(window, "_NET_WM_STATE_HIDDEN");
    }

    bool isListed(xcb_window_t window) {
        return !observer_.hasState(window, "_NET_WM_STATE_SKIP_TASKBAR") &&
               !observer_.hasState(window, "_NET_WM_STATE_SKIP_PAGER");
    }

    /// Whether, after some waiting, the window is active, above all others and has the keys.
    bool comesToTheFront(xcb_window_t window) {
        return waitUntil([&] { return hasKeys(window) && observer_.stacking().back() == window; });
    }

    bool hasKeys(xcb_window_t window) {
        return observer_.activeWindow() == window && observer_.isFocused(window);
    }

    std::unique_ptr<x11::Connection> toolkit_;
    std::optional<x11::OwnWindows> own_;
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, OwnWindowsTest, windowManagers(), windowManagerName);

TEST_P(OwnWindowsTest, KeepsAWindowOutOfTheTaskBarThatIsNotThereYet) {
    const auto window = create();
    own_->setShownInTaskBar(window, false);
    xcb_map_window(server(), window);
    xcb_flush(server());
    EXPECT_TRUE(waitUntil([&] { return isManaged(window); }));
    EXPECT_TRUE(waitUntil([&] { return isLeftOut(window); }));
}

TEST_P(OwnWindowsTest, ChangesItsMindBeforeTheWindowIsThere) {
    const auto window = create();
    own_->setShownInTaskBar(window, false);
    own_->setShownInTaskBar(window, false);
    xcb_aux_sync(server());
    EXPECT_EQ(observer_.numbers(window, "_NET_WM_STATE").size(), 2U);
    own_->setShownInTaskBar(window, true);
    xcb_aux_sync(server());
    EXPECT_TRUE(observer_.numbers(window, "_NET_WM_STATE").empty());
}

TEST_P(OwnWindowsTest, LeavesOtherStatesOfAWindowAlone) {
    const auto window = create();
    xcb_aux_sync(server());
    const auto above = observer_.atom("_NET_WM_STATE_ABOVE");
    observer_.setNumbers(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {above});
    own_->setShownInTaskBar(window, false);
    xcb_aux_sync(server());
    EXPECT_TRUE(isLeftOut(window));
    EXPECT_TRUE(observer_.hasState(window, "_NET_WM_STATE_ABOVE"));
    own_->setShownInTaskBar(window, true);
    xcb_aux_sync(server());
    EXPECT_EQ(observer_.numbers(window, "_NET_WM_STATE"), std::vector{above});
}

TEST_P(OwnWindowsTest, WritesNoStateOfAWindowThatAWindowManagerKeepsMinimised) {
    const auto window = create();
    xcb_aux_sync(server());
    const auto hidden = observer_.atom("_NET_WM_STATE_HIDDEN");
    observer_.setNumbers(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {hidden});
    observer_.setNumbers(window, "WM_STATE", observer_.atom("WM_STATE"),
                         {XCB_ICCCM_WM_STATE_ICONIC, XCB_NONE});
    own_->setShownInTaskBar(window, false);
    xcb_aux_sync(server());
    EXPECT_EQ(observer_.numbers(window, "_NET_WM_STATE"), std::vector{hidden});
}

TEST_P(OwnWindowsTest, WritesTheStatesOfAWindowThatHasLeftTheScreen) {
    const auto window = create();
    xcb_aux_sync(server());
    observer_.setNumbers(window, "WM_STATE", observer_.atom("WM_STATE"),
                         {XCB_ICCCM_WM_STATE_WITHDRAWN, XCB_NONE});
    own_->setShownInTaskBar(window, false);
    xcb_aux_sync(server());
    EXPECT_TRUE(isLeftOut(window));
}

TEST_P(OwnWindowsTest, TakesAWindowOnTheScreenOutOfTheTaskBarAndPutsItBack) {
    const auto window = open();
    EXPECT_TRUE(isListed(window));
    own_->setShownInTaskBar(window, false);
    EXPECT_TRUE(waitUntil([&] { return isLeftOut(window); }));
    own_->setShownInTaskBar(window, true);
    EXPECT_TRUE(waitUntil([&] { return isListed(window); }));
}

TEST_P(OwnWindowsTest, KeepsAMinimisedWindowOutOfTheTaskBarWhenItComesBack) {
    const auto window = open();
    observer_.minimise(window);
    EXPECT_TRUE(waitUntil([&] { return isMinimised(window); }));
    own_->setShownInTaskBar(window, false);
    EXPECT_TRUE(waitUntil([&] { return isLeftOut(window); }));
    EXPECT_TRUE(isMinimised(window));
    own_->bringToFront(window);
    EXPECT_TRUE(waitUntil([&] { return !isMinimised(window); }));
    EXPECT_TRUE(isLeftOut(window));
}

TEST_P(OwnWindowsTest, BringsACoveredWindowToTheFront) {
    const auto window = open();
    const auto other = openActive("Other");
    own_->bringToFront(window);
    EXPECT_TRUE(comesToTheFront(window));
}

TEST_P(OwnWindowsTest, BringsAWindowToTheFrontThatIsJustComing) {
    const auto other = openActive("Other");
    const auto window = create();
    xcb_map_window(server(), window);
    own_->bringToFront(window);
    EXPECT_TRUE(comesToTheFront(window));
}

TEST_P(OwnWindowsTest, BringsAMinimisedWindowBack) {
    const auto window = open();
    observer_.minimise(window);
    EXPECT_TRUE(waitUntil([&] { return isMinimised(window); }));
    const auto other = openActive("Other");
    own_->bringToFront(window);
    EXPECT_TRUE(comesToTheFront(window));
    EXPECT_FALSE(isMinimised(window));
}

TEST_P(OwnWindowsTest, GoesToTheWorkspaceOfTheWindow) {
    const auto window = open();
    observer_.switchToDesktop(1);
    EXPECT_TRUE(waitUntil([&] { return observer_.currentDesktop() == 1; }));
    const auto other = openActive("Other");
    own_->bringToFront(window);
    EXPECT_TRUE(waitUntil([&] { return observer_.currentDesktop() == 0 && hasKeys(window); }));
}

TEST_P(OwnWindowsTest, AsksNothingOfAWindowThatIsGone) {
    const auto window = open();
    const auto other = openActive("Other");
    xcb_destroy_window(server(), window);
    xcb_aux_sync(server());
    own_->bringToFront(window);
    own_->setShownInTaskBar(window, false);
    const auto next = open(); // a fence: the window manager has dealt with the requests
    own_->bringToFront(next);
    EXPECT_TRUE(comesToTheFront(next));
}

} // namespace

} // namespace hollowfernpike::test
