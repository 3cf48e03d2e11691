#include "platform/x11/tray/SystemTray.h"

#include "platform/x11/DesktopObserver.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/tray/Tray.h"
#include "support/PrivateDesktop.h"
#include "support/fakes/PolledRunLoop.h"

#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <xcb/xcb_aux.h>

namespace hollowfernpike {
namespace {

using test::Tray;
using testing::ElementsAre;

class SystemTrayTest : public testing::Test {
protected:
    SystemTrayTest() {
        ::setenv("DISPLAY", display.name().c_str(), 1);
        toolkit = x11::Connection::open();
        tray.emplace(toolkit->get(), loop);
    }

    std::unique_ptr<platform::Subscription> watch() {
        return tray->watch([this] { ++news; });
    }

    bool runUntilNews(int count) {
        return loop.runUntil([&] { return news >= count; });
    }

    test::VirtualDisplay display;
    test::PolledRunLoop loop;
    std::unique_ptr<x11::Connection> toolkit;
    std::optional<x11::SystemTray> tray;
    int news = 0;
};

TEST_F(SystemTrayTest, IsThereAsLongAsSomebodyOwnsItsSelection) {
    EXPECT_FALSE(tray->isThere());
    {
        const Tray owner(display.name());
        EXPECT_TRUE(tray->isThere());
    }
    EXPECT_TRUE(test::waitUntil([&] { return !tray->isThere(); }));
}

TEST_F(SystemTrayTest, TellsOfATrayThatComes) {
    const auto subscription = watch();
    Tray owner(display.name());
    owner.announce();
    EXPECT_TRUE(runUntilNews(1));
    EXPECT_TRUE(tray->isThere());
}

TEST_F(SystemTrayTest, TellsOfTheEndOfATrayThatWasThereBefore) {
    std::optional<Tray> owner(display.name());
    const auto subscription = watch();
    owner.reset();
    EXPECT_TRUE(runUntilNews(1));
    EXPECT_FALSE(tray->isThere());
}

TEST_F(SystemTrayTest, TellsOfTheEndOfATrayThatCameLater) {
    const auto subscription = watch();
    for (int round = 1; round <= 2; ++round) {
        std::optional<Tray> owner(display.name());
        owner->announce();
        EXPECT_TRUE(runUntilNews(2 * round - 1));
        owner.reset();
        EXPECT_TRUE(runUntilNews(2 * round));
        EXPECT_FALSE(tray->isThere());
    }
    EXPECT_EQ(news, 4);
}

TEST_F(SystemTrayTest, TellsOfATrayThatTakesThePlaceOfAnother) {
    std::optional<Tray> first(display.name());
    const auto subscription = watch();
    std::optional<Tray> second(display.name());
    second->announce();
    EXPECT_TRUE(runUntilNews(1));

    first.reset(); // does not matter any more
    second.reset();
    EXPECT_TRUE(runUntilNews(2));
    EXPECT_FALSE(tray->isThere());
    EXPECT_EQ(news, 2);
}

TEST_F(SystemTrayTest, TellsNothingOfOtherManagersAndWindows) {
    Tray owner(display.name());
    const auto subscription = watch();
    owner.announce("WM_S0");
    owner.observer().destroyWindow(owner.observer().createWindow(owner.observer().root()));
    owner.announce();
    EXPECT_TRUE(runUntilNews(1));
    EXPECT_EQ(news, 1);
}

TEST_F(SystemTrayTest, IsSilentWhenNobodyWatches) {
    auto subscription = watch();
    subscription.reset();
    int later = 0;
    const auto fence = tray->watch([&] { ++later; });
    Tray owner(display.name());
    owner.announce();
    EXPECT_TRUE(loop.runUntil([&] { return later == 1; }));
    EXPECT_EQ(news, 0);
}

TEST_F(SystemTrayTest, LetsGoOfADisplayThatIsGone) {
    std::signal(SIGPIPE, SIG_IGN); // as the program does
    const auto subscription = watch();
    EXPECT_EQ(loop.watched(), 1U);
    display.server().signal(SIGKILL);
    EXPECT_TRUE(loop.runUntil([&] { return loop.watched() == 0; }));
    EXPECT_FALSE(tray->isThere());
    EXPECT_EQ(tray->watch([] {}), nullptr);
}

TEST_F(SystemTrayTest, BlendsWindowsIfItWantsAVisualWithAlpha) {
    EXPECT_FALSE(tray->blendsWindows());
    Tray owner(display.name());
    EXPECT_FALSE(tray->blendsWindows());
    owner.setVisualOfDepth(24);
    EXPECT_FALSE(tray->blendsWindows());
    owner.setVisualOfDepth(32);
    EXPECT_TRUE(tray->blendsWindows());
    owner.observer().setNumbers(owner.window(), "_NET_SYSTEM_TRAY_VISUAL", XCB_ATOM_VISUALID, {1});
    EXPECT_FALSE(tray->blendsWindows());
    owner.observer().setText(owner.window(), "_NET_SYSTEM_TRAY_VISUAL", "no visual");
    EXPECT_FALSE(tray->blendsWindows());
}

TEST_F(SystemTrayTest, AsksForAWindowToBeTakenInThatIsOffTheScreen) {
    Tray owner(display.name());
    test::DesktopObserver observer(display.name());
    const auto window = observer.createWindow(observer.root());
    xcb_map_window(observer.get(), window);
    observer.sync();
    tray->embed(window);
    std::vector<std::uint32_t> request;
    EXPECT_TRUE(test::waitUntil([&] { return !(request = owner.request()).empty(); }));
    EXPECT_THAT(request, ElementsAre(0U, window));
    const x11::Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        observer.get(), xcb_get_window_attributes(observer.get(), window), nullptr));
    EXPECT_EQ(attributes->map_state, XCB_MAP_STATE_UNMAPPED);
}

TEST_F(SystemTrayTest, AsksNothingWithoutATray) {
    test::DesktopObserver observer(display.name());
    tray->embed(observer.createWindow(observer.root()));
    xcb_aux_sync(toolkit->get());
    const x11::Reply<xcb_generic_event_t> error(xcb_poll_for_event(toolkit->get()));
    EXPECT_EQ(error, nullptr);
}

} // namespace
} // namespace hollowfernpike
