#pragma once

#include "support/XClient.h"

#include <algorithm>
#include <vector>

namespace hollowfernpike::test {

/// A window that takes the focus, and the key events that it gets. Under a window manager it may
/// have the focus some time later.
class FocusedWindow : public XClient {
public:
    explicit FocusedWindow(const std::string& display)
        : XClient(display), window_(xcb_generate_id(server())) {
        const std::uint32_t events =
            XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_EXPOSURE;
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, window_, connection().root(), 0, 0, 100,
                          100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
        xcb_map_window(server(), window_);
        takeFocus();
    }

    void takeFocus() {
        xcb_set_input_focus(server(), XCB_INPUT_FOCUS_NONE, window_, XCB_CURRENT_TIME);
        sync();
    }

    xcb_window_t window() const { return window_; }

    bool hasFocus() {
        const x11::Reply<xcb_get_input_focus_reply_t> focus{
            xcb_get_input_focus_reply(server(), xcb_get_input_focus(server()), nullptr)};
        return focus && focus->focus == window_;
    }

    /// Moves the pointer into it, or out to the left.
    void pointAt(bool inside) {
        xcb_warp_pointer(server(), XCB_NONE, window_, 0, 0, 0, 0, inside ? 50 : -50, 50);
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

    xcb_window_t window_;
    std::vector<KeyEvent> events_;
};

} // namespace hollowfernpike::test
