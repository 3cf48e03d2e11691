#include "platform/qt/Pointer.h"
#include "platform/qt/status/StatusItemTest.h"
#include "platform/x11/DesktopObserver.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/tray/Tray.h"
#include "support/KeyInjector.h"

#include <QApplication>
#include <QImage>
#include <QResizeEvent>
#include <QScreen>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <ostream>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using testing::ElementsAre;

/// A tray of the older kind that people use, at the top left of the screen, in colours that our
/// symbol does not have.
struct TrayProgram {
    const char* name;
    std::vector<std::string> arguments;
    const char* configuration; ///< text of a file, the last argument; null for none
};

std::ostream& operator<<(std::ostream& stream, const TrayProgram& program) {
    return stream << program.name;
}

const TrayProgram programs[] = {
    {"tint2",
     {"tint2", "-c"},
     "panel_items = S\npanel_size = 200 28\npanel_position = top left\nsystray_padding = 4 4 4\n"
     "systray_icon_size = 16\nrounded = 0\nbackground_color = #3311aa 100\n"
     "panel_background_id = 1\n"},
    {"trayer",
     {"trayer", "--edge", "top", "--align", "left", "--widthtype", "pixel", "--width", "200",
      "--height", "28", "--transparent", "true", "--alpha", "0", "--tint", "0x3311aa"},
     nullptr},
};

class StatusItemInTrayTest : public test::StatusItemTest,
                             public testing::WithParamInterface<TrayProgram> {
protected:
    StatusItemInTrayTest() : StatusItemTest("openbox") {}

    std::unique_ptr<test::ChildProcess> startTray() {
        auto arguments = GetParam().arguments;
        if (GetParam().configuration != nullptr) {
            const auto file = session.desktop().home() / "tray.conf";
            std::ofstream(file) << GetParam().configuration;
            arguments.push_back(file);
        }
        auto program = session.desktop().start(arguments);
        EXPECT_TRUE(session.runUntil([&] { return tray.isThere(); })) << program->errors();
        return program;
    }

    /// Whether, after some waiting, the item is inside the tray and on the screen.
    bool isTakenIn() {
        return session.runUntil([&] { return isShown() && area().width() > 1 && isDrawn(); });
    }

    /// Where the item is on the screen; empty if it is not there.
    QRect area() {
        const auto* widget = trayWindow();
        return widget == nullptr ? QRect() : areaOf(static_cast<xcb_window_t>(widget->winId()));
    }

    QRect areaOf(xcb_window_t native) {
        auto* server = observer.get();
        const x11::Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, native),
                                            nullptr));
        const x11::Reply<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(server, xcb_get_geometry(server, native), nullptr));
        const x11::Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
            server, xcb_translate_coordinates(server, native, observer.root(), 0, 0), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !size || !place) {
            return {};
        }
        return {place->dst_x, place->dst_y, size->width, size->height};
    }

    static QImage screenAt(const QRect& where) {
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, where.x(), where.y(), where.width(), where.height())
            .toImage();
    }

    /// Whether the screen shows both colours of the symbol and the panel's own at its place.
    bool isDrawn() {
        const auto picture = screenAt(area());
        const auto panelColour = screenAt({150, 14, 1, 1}).pixel(0, 0);
        int light = 0;
        int dark = 0;
        int ground = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const auto colour = picture.pixelColor(x, y);
                ground += colour.rgb() == panelColour ? 1 : 0;
                light += colour.lightness() > 200 ? 1 : 0;
                dark += colour.lightness() < 70 && colour.saturation() < 60 ? 1 : 0;
            }
        }
        return light > 20 && dark > 20 && ground > 20;
    }

    test::DesktopObserver observer{session.desktop().display()};
    test::Pointer pointer{session.desktop().display()};
};

INSTANTIATE_TEST_SUITE_P(Each, StatusItemInTrayTest, testing::ValuesIn(programs),
                         [](const auto& program) { return std::string(program.param.name); });

TEST_P(StatusItemInTrayTest, AppearsInATrayThatIsThereAlready) {
    const auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    EXPECT_EQ(trayWindow()->toolTip(), "Keys & more");
    EXPECT_EQ(trayWindow()->accessibleName(), "Keys & more");
}

TEST_P(StatusItemInTrayTest, AppearsInATrayThatComesLongAfterIt) {
    createItem();
    waitPastGrace();
    EXPECT_FALSE(isShown());
    const auto program = startTray();
    EXPECT_TRUE(isTakenIn());
}

TEST_P(StatusItemInTrayTest, AppearsAgainAfterTheTrayWasRestarted) {
    auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    for (const int end : {SIGTERM, SIGKILL}) {
        program->signal(end);
        EXPECT_TRUE(session.runUntil([&] { return !isShown() && trayWindow() == nullptr; }));
        EXPECT_TRUE(program->wait());
        program = startTray();
        EXPECT_TRUE(isTakenIn());
    }
}

TEST_P(StatusItemInTrayTest, GivesHostsOfNotifierItemsTheFirstTurn) {
    const auto program = startTray();
    const auto host = startHost();
    createItem();
    registeredItem(*host);
    waitPastGrace();
    EXPECT_EQ(trayWindow(), nullptr);
    EXPECT_TRUE(isShown());
}

TEST_P(StatusItemInTrayTest, MovesToAHostThatComesLaterAndBackWhenItGoes) {
    const auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    const auto host = startHost();
    registeredItem(*host);
    EXPECT_EQ(trayWindow(), nullptr);
    EXPECT_TRUE(isShown());
    host->signal(SIGKILL);
    EXPECT_TRUE(isTakenIn());
}

TEST_P(StatusItemInTrayTest, OpensItsMenuAtALeftAndARightClick) {
    const auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    const auto where = area().center();
    for (const auto button : {std::uint8_t{1}, std::uint8_t{3}}) {
        pointer.click(where.x(), where.y(), button);
        EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
        test::KeyInjector keyboard(session.desktop().display());
        keyboard.strike({"DOWN"});
        keyboard.strike({"RTRN"});
        EXPECT_TRUE(session.runUntil([&] { return !delegate.actions.empty(); }));
        EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow"));
        delegate.actions.clear();
    }
}

TEST_P(StatusItemInTrayTest, IsAWindowOfTheStatusBar) {
    const auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    const auto windows = application.windows();
    EXPECT_EQ(
        std::ranges::count(windows, "StatusBarWindow", &platform::ApplicationWindow::className), 1);
}

TEST_P(StatusItemInTrayTest, LetsNoTimerRunWhileItIsShown) {
    const auto program = startTray();
    createItem();
    EXPECT_TRUE(isTakenIn());
    EXPECT_EQ(timersWhileNothingHappens(), 0);
}

class StatusItemInLyingTrayTest : public test::StatusItemTest {};

// What is asked of the server for more than it can give costs the connection to the display.
TEST_F(StatusItemInLyingTrayTest, IsPaintedAlthoughItHasJustBecomeHuge) {
    constexpr std::uint32_t huge = 30'000;
    test::Tray owner(session.desktop().display());
    createItem();
    std::vector<std::uint32_t> request;
    ASSERT_TRUE(session.runUntil([&] { return !(request = owner.request()).empty(); }));
    const auto native = request.back();
    owner.takeIn(native, 32, 32);
    ASSERT_TRUE(session.runUntil([&] { return trayWindow()->width() == 32; }));
    owner.takeIn(native, huge, huge);
    QResizeEvent again(trayWindow()->size(), trayWindow()->size());
    QCoreApplication::sendEvent(trayWindow(), &again); // forgets what it has painted
    trayWindow()->repaint();
    EXPECT_TRUE(session.runUntil([] { return trayWindow()->width() == static_cast<int>(huge); }));
}

} // namespace
} // namespace hollowfernpike
