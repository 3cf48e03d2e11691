#pragma once

#include "platform/x11/Atoms.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Reply.h"
#include "platform/x11/Xkb.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <xcb/xcb_aux.h>
#include <xcb/xtest.h>

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

    /// On the root; false if somebody else holds it.
    bool grabKey(xcb_keycode_t key, std::uint16_t modifiers) {
        return grabKeyOn(connection_->root(), key, modifiers);
    }
    void ungrabKey(xcb_keycode_t key, std::uint16_t modifiers) {
        xcb_ungrab_key(server(), key, connection_->root(), modifiers);
        sync();
    }

    /// Whether nobody holds it.
    bool isFree(xcb_keycode_t key, std::uint16_t modifiers) {
        return isFreeOn(connection_->root(), key, modifiers);
    }
    bool isFreeOn(xcb_window_t window, xcb_keycode_t key, std::uint16_t modifiers) {
        const bool grabbed = grabKeyOn(window, key, modifiers);
        if (grabbed) {
            xcb_ungrab_key(server(), key, window, modifiers);
            sync();
        }
        return grabbed;
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

    void lockLayoutGroup(std::uint8_t group) {
        xcb_xkb_latch_lock_state(server(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        sync();
    }

    void lockModifiers(unsigned modifiers, bool locked) {
        const auto mask = static_cast<std::uint8_t>(modifiers);
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
    bool grabKeyOn(xcb_window_t window, xcb_keycode_t key, std::uint16_t modifiers) {
        const x11::Reply<xcb_generic_error_t> error{xcb_request_check(
            server(), xcb_grab_key_checked(server(), 0, window, modifiers, key, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC))};
        return !error;
    }
    void fake(std::uint8_t type, xcb_keycode_t key) {
        xcb_test_fake_input(server(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    }

    std::unique_ptr<x11::Connection> connection_;
};

} // namespace hollowfernpike::test
