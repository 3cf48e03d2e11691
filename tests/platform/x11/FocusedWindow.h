#pragma once

#include "platform/x11/XClient.h"

#include <algorithm>
#include <vector>

namespace hollowfernpike::test {

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
