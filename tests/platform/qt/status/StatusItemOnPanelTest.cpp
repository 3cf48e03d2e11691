#include "platform/qt/Pointer.h"
#include "platform/qt/status/StatusItemTest.h"
#include "platform/x11/DesktopObserver.h"
#include "platform/x11/server/Reply.h"
#include "support/KeyInjector.h"

#include <QApplication>
#include <QImage>
#include <QScreen>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using testing::ElementsAre;

constexpr const char* panelSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

constexpr int panelHeight = 34;
constexpr int lowestMenu = 40;
constexpr auto shortPatience = std::chrono::seconds{1}; // with a panel that is not ready yet

bool isNear(QRgb pixel, QRgb colour) {
    constexpr int tolerance = 10;
    return std::abs(qRed(pixel) - qRed(colour)) < tolerance &&
           std::abs(qGreen(pixel) - qGreen(colour)) < tolerance &&
           std::abs(qBlue(pixel) - qBlue(colour)) < tolerance;
}

/// A panel that people use, as a host of status notifier items.
class StatusItemOnPanelTest : public test::StatusItemTest {
protected:
    StatusItemOnPanelTest() : StatusItemTest("openbox") {
        const auto directory =
            session.desktop().home() / ".config/xfce4/xfconf/xfce-perchannel-xml";
        std::filesystem::create_directories(directory);
        std::ofstream(directory / "xfce4-panel.xml") << panelSettings;
    }

    std::unique_ptr<test::ChildProcess> startPanel() {
        return session.desktop().start({"xfce4-panel", "--disable-wm-check"});
    }

    /// Where the panel, after some waiting, shows the symbol in its colours.
    QPoint place() {
        QPoint found;
        EXPECT_TRUE(session.runUntil([&] { return find(found); }));
        return found;
    }

    static bool find(QPoint& found) {
        auto* const screen = QGuiApplication::primaryScreen();
        const auto picture =
            screen->grabWindow(0, 0, 0, screen->size().width(), panelHeight).toImage();
        QList<QPoint> dark;
        int light = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                light += isNear(picture.pixel(x, y), 0xF4F4F4) ? 1 : 0;
                if (isNear(picture.pixel(x, y), 0x303338)) {
                    dark.append({x, y});
                }
            }
        }
        if (dark.size() < 20 || light < 20) {
            return false;
        }
        const QRect box = QPolygon(dark).boundingRect();
        found = box.center();
        return box.width() < panelHeight;
    }

    /// The panel's open menu on the screen; empty if there is none. It is a window on the screen
    /// that no window manager has touched.
    QRect openMenu() {
        auto* const server = observer.get();
        for (const auto native : observer.children(observer.root())) {
            const x11::Reply<xcb_get_window_attributes_reply_t> attributes(
                xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, native),
                                                nullptr));
            const x11::Reply<xcb_get_geometry_reply_t> area(
                xcb_get_geometry_reply(server, xcb_get_geometry(server, native), nullptr));
            if (attributes && area && attributes->override_redirect != 0 &&
                attributes->map_state == XCB_MAP_STATE_VIEWABLE && area->height >= lowestMenu) {
                return {area->x, area->y, area->width, area->height};
            }
        }
        return {};
    }

    /// Chooses the first entry of the menu that the panel opens for the item. Until the panel has
    /// read ours it opens one of its own, in which the first entry is only a title.
    bool chooseFirst() {
        const auto count = delegate.actions.size() + 1;
        return session.runUntil([&] {
            const auto where = place();
            pointer.click(where.x(), where.y(), 3);
            if (session.runUntil([&] { return !openMenu().isEmpty(); }, shortPatience)) {
                const auto first = openMenu().topLeft() + QPoint(20, 15);
                pointer.click(first.x(), first.y());
            }
            const auto isChosen = [&] { return delegate.actions.size() == count; };
            if (session.runUntil(isChosen, shortPatience)) {
                return true;
            }
            keyboard.strike({"ESC"});
            EXPECT_TRUE(session.runUntil([&] { return openMenu().isEmpty(); }));
            return false;
        });
    }

    test::DesktopObserver observer{session.desktop().display()};
    test::Pointer pointer{session.desktop().display()};
    test::KeyInjector keyboard{session.desktop().display()};
};

TEST_F(StatusItemOnPanelTest, OffersItsMenuThere) {
    const auto panel = startPanel();
    createItem();
    EXPECT_TRUE(chooseFirst()) << panel->errors();
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow"));
    EXPECT_EQ(trayWindow(), nullptr); // although this panel has a tray, too
}

TEST_F(StatusItemOnPanelTest, OffersTheReplacedMenu) {
    const auto panel = startPanel();
    createItem();
    EXPECT_TRUE(chooseFirst());
    item->setMenu({language, test::menuItem("終了", "quitApp"), manage});
    item->setMenu({test::menuItem("終了", "quitApp"), language, manage});
    EXPECT_TRUE(chooseFirst()) << panel->errors();
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow", "quitApp"));
}

TEST_F(StatusItemOnPanelTest, OpensItsMenuAtALeftClick) {
    const auto panel = startPanel();
    createItem();
    const auto where = place();
    pointer.click(where.x(), where.y());
    EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    keyboard.strike({"DOWN"});
    keyboard.strike({"RTRN"});
    EXPECT_TRUE(session.runUntil([&] { return !delegate.actions.empty(); }));
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow"));
}

TEST_F(StatusItemOnPanelTest, AppearsOnAPanelThatComesLongAfterItAndOnTheNext) {
    createItem();
    waitPastGrace();
    for (int round = 0; round < 2; ++round) {
        const auto panel = startPanel();
        EXPECT_TRUE(chooseFirst()) << panel->errors();
        panel->signal(SIGTERM);
        EXPECT_TRUE(session.runUntil([&] { return !isShown() && panel->hasEnded(); }));
    }
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow", "openMainWindow"));
}

} // namespace
} // namespace hollowfernpike
