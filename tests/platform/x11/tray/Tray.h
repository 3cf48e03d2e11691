#pragma once

#include "platform/x11/DesktopObserver.h"
#include "platform/x11/server/Reply.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/xcb_aux.h>

namespace hollowfernpike::test {

/// A tray as far as applications can tell; gone with the object.
class Tray {
public:
    explicit Tray(const std::string& display) : observer_(display) {
        window_ = observer_.createWindow(observer_.root());
        own(selectionOfFirstScreen);
    }

    xcb_window_t window() const { return window_; }
    DesktopObserver& observer() { return observer_; }

    void own(const char* selection) {
        xcb_set_selection_owner(observer_.get(), window_, observer_.atom(selection),
                                XCB_CURRENT_TIME);
        observer_.sync();
    }

    /// Tells applications that it owns this selection now.
    void announce(const char* selection = selectionOfFirstScreen) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = observer_.root();
        event.type = observer_.atom("MANAGER");
        event.data.data32[1] = observer_.atom(selection);
        event.data.data32[2] = window_;
        xcb_send_event(observer_.get(), 0, observer_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        observer_.sync();
    }

    /// Says which visual it wants windows to have.
    void setVisualOfDepth(std::int8_t depth) {
        auto* const screen = xcb_aux_get_screen(observer_.get(), 0);
        const auto* const visual = xcb_aux_find_visual_by_attrs(screen, -1, depth);
        ASSERT_NE(visual, nullptr);
        observer_.setNumbers(window_, "_NET_SYSTEM_TRAY_VISUAL", XCB_ATOM_VISUALID,
                             {visual->visual_id});
    }

    /// What it was asked last, as the protocol's numbers.
    std::vector<std::uint32_t> request() {
        observer_.sync();
        std::vector<std::uint32_t> numbers;
        while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(observer_.get())}) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
                message.type == observer_.atom("_NET_SYSTEM_TRAY_OPCODE")) {
                numbers.assign(message.data.data32 + 1, message.data.data32 + 3);
            }
        }
        return numbers;
    }

    /// Takes in the window, at this size, and shows it at the corner of the screen.
    void takeIn(xcb_window_t window, std::uint32_t width, std::uint32_t height) {
        const std::array size{width, height};
        constexpr std::uint32_t unmanaged = 1;
        xcb_change_window_attributes(observer_.get(), window_, XCB_CW_OVERRIDE_REDIRECT,
                                     &unmanaged);
        xcb_reparent_window(observer_.get(), window, window_, 0, 0);
        xcb_configure_window(observer_.get(), window,
                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
        xcb_map_window(observer_.get(), window);
        xcb_map_window(observer_.get(), window_);
        observer_.sync();
    }

private:
    static constexpr const char* selectionOfFirstScreen = "_NET_SYSTEM_TRAY_S0";

    DesktopObserver observer_;
    xcb_window_t window_;
};

} // namespace hollowfernpike::test
