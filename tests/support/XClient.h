#pragma once

#include "platform/x11/keyboard/Xkb.h"
#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <xcb/xcb_aux.h>
#include <xcb/xtest.h>

namespace hollowfernpike::test {

/// A key with exactly this modifier state, on the root window if no other is named.
struct KeyGrab {
    xcb_keycode_t key = 0;
    std::uint16_t state = 0;
    xcb_window_t window = XCB_NONE;
};

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

    /// Takes the key; false if somebody else holds it.
    bool grab(const KeyGrab& grab) { return succeeded(request(grab)); }
    void ungrab(const KeyGrab& grab) {
        giveBack(grab);
        sync();
    }

    /// Whether other clients hold all of these. Nobody can notice the question.
    bool areTaken(const std::vector<KeyGrab>& grabs) {
        xcb_grab_server(server());
        std::vector<xcb_void_cookie_t> attempts;
        for (const auto& grab : grabs) {
            attempts.push_back(request(grab));
            giveBack(grab);
        }
        xcb_ungrab_server(server());
        xcb_flush(server());
        // Every answer has to be fetched, so this does not stop at the first.
        return std::ranges::count_if(attempts,
                                     [this](auto attempt) { return succeeded(attempt); }) == 0;
    }
    bool isFree(const KeyGrab& grab) { return !areTaken({grab}); }

    /// Waits for a press of a key that this client holds; false after a bound.
    bool waitForPress(const KeyGrab& grab) {
        return waitUntil([&] {
            const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(server())};
            return event && x11::eventCode(*event) == XCB_KEY_PRESS && event->pad0 == grab.key;
        });
    }

    /// As screen lockers and menus do; false if somebody else has the keyboard or the pointer.
    bool takeInput() { return grabPointer() && grabKeyboard(); }
    void giveInputBack() {
        xcb_ungrab_keyboard(server(), XCB_CURRENT_TIME);
        givePointerBack();
    }
    void givePointerBack() {
        xcb_ungrab_pointer(server(), XCB_CURRENT_TIME);
        sync();
    }

    bool grabPointer() {
        const x11::Reply<xcb_grab_pointer_reply_t> reply{xcb_grab_pointer_reply(
            server(),
            xcb_grab_pointer(server(), 0, connection_->root(), 0, XCB_GRAB_MODE_ASYNC,
                             XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
            nullptr)};
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    bool grabKeyboard() {
        const x11::Reply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(
            server(),
            xcb_grab_keyboard(server(), 0, connection_->root(), XCB_CURRENT_TIME,
                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr)};
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    /// Presses keys one after the other while one is held, as fast as the server can take them.
    void typeAtOnce(xcb_keycode_t held, const std::vector<xcb_keycode_t>& keys) {
        fake(XCB_KEY_PRESS, held);
        for (const auto key : keys) {
            fake(XCB_KEY_PRESS, key);
            fake(XCB_KEY_RELEASE, key);
        }
        fake(XCB_KEY_RELEASE, held);
        sync();
    }

    /// Says what window managers say when they begin (ICCCM 2.8).
    void announceWindowManager() {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = connection_->root();
        message.type = x11::internAtom(server(), "MANAGER");
        message.data.data32[1] = x11::internAtom(server(), "WM_S0");
        xcb_send_event(server(), 0, connection_->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        sync();
    }

    /// As a layout switcher does.
    void lockLayoutGroup(std::uint8_t group) {
        xcb_xkb_latch_lock_state(server(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        sync();
    }

    void lockModifiers(unsigned wanted, bool locked) {
        const auto mask = static_cast<std::uint8_t>(wanted);
        xcb_xkb_latch_lock_state(server(), XCB_XKB_ID_USE_CORE_KBD, mask, locked ? mask : 0, 0, 0,
                                 0, 0, 0);
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
    xcb_window_t windowOf(const KeyGrab& grab) {
        return grab.window == XCB_NONE ? connection_->root() : grab.window;
    }
    xcb_void_cookie_t request(const KeyGrab& grab) {
        return xcb_grab_key_checked(server(), 0, windowOf(grab), grab.state, grab.key,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    }
    void giveBack(const KeyGrab& grab) {
        xcb_ungrab_key(server(), grab.key, windowOf(grab), grab.state);
    }
    bool succeeded(xcb_void_cookie_t cookie) {
        return !x11::Reply<xcb_generic_error_t>{xcb_request_check(server(), cookie)};
    }
    void fake(std::uint8_t type, xcb_keycode_t key) {
        xcb_test_fake_input(server(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    }

    std::unique_ptr<x11::Connection> connection_;
};

} // namespace hollowfernpike::test
