#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Reply.h"
#include "platform/x11/Xkb.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <xcb/xcb_aux.h>

namespace hollowfernpike::test {

/// Some other program on the display, which may want keys of its own.
class XClient {
public:
    explicit XClient(const std::string& display) : connection_(x11::Connection::open(display)) {
        if (!connection_) {
            throw std::runtime_error("no display " + display);
        }
        xcb_xkb_use_extension(server(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
        sync();
    }

    x11::Connection& connection() { return *connection_; }
    xcb_connection_t* server() { return connection_->get(); }

    /// Returns when the server has done all that was asked of it.
    void sync() { xcb_aux_sync(server()); }

    /// False if somebody else holds it.
    bool grabKey(xcb_keycode_t key, std::uint16_t modifiers) {
        const x11::Reply<xcb_generic_error_t> error{xcb_request_check(
            server(), xcb_grab_key_checked(server(), 0, connection_->root(), modifiers, key,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC))};
        return !error;
    }
    void ungrabKey(xcb_keycode_t key, std::uint16_t modifiers) {
        xcb_ungrab_key(server(), key, connection_->root(), modifiers);
        sync();
    }

    bool grabKeyboard() {
        const x11::Reply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(
            server(),
            xcb_grab_keyboard(server(), 0, connection_->root(), XCB_CURRENT_TIME,
                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr)};
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    void lockLayoutGroup(std::uint8_t group) {
        xcb_xkb_latch_lock_state(server(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        sync();
    }

    /// Changes what some keys write, so many times in one go.
    void changeKeySymbols(int times) {
        constexpr xcb_keysym_t symbol = 'z';
        for (int count = 0; count < times; ++count) {
            xcb_change_keyboard_mapping(server(), 1, 250, 1, &symbol);
        }
        sync();
    }

    /// The locked modifiers of the keyboard.
    std::uint8_t lockedModifiers() {
        const x11::Reply<xcb_xkb_get_state_reply_t> state{xcb_xkb_get_state_reply(
            server(), xcb_xkb_get_state(server(), XCB_XKB_ID_USE_CORE_KBD), nullptr)};
        return state->lockedMods;
    }

private:
    std::unique_ptr<x11::Connection> connection_;
};

/// The window that has the focus, and what the keyboard told it.
class FocusedWindow : public XClient {
public:
    explicit FocusedWindow(const std::string& display) : XClient(display) {
        const auto window = xcb_generate_id(server());
        const std::uint32_t events =
            XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_EXPOSURE;
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, window, connection().root(), 0, 0, 100,
                          100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
        xcb_map_window(server(), window);
        xcb_set_input_focus(server(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        sync();
    }

    /// How often it was told of this key so far.
    std::size_t presses(xcb_keycode_t key) { return count(XCB_KEY_PRESS, key); }
    std::size_t releases(xcb_keycode_t key) { return count(XCB_KEY_RELEASE, key); }

private:
    struct KeyEvent {
        std::uint8_t type;
        xcb_keycode_t key;
    };

    std::size_t count(std::uint8_t type, xcb_keycode_t key) {
        sync();
        while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(server())}) {
            events_.push_back({event->response_type, event->pad0});
        }
        return static_cast<std::size_t>(std::ranges::count_if(events_, [&](const KeyEvent& event) {
            return event.type == type && event.key == key;
        }));
    }

    std::vector<KeyEvent> events_;
};

} // namespace hollowfernpike::test
