#include "platform/x11/grabs/FocusableWindows.h"

#include "platform/x11/taps/EventKinds.h"
#include "platform/x11/windows/DesktopQuery.h"

#include <algorithm>

namespace hollowfernpike::x11 {

bool FocusableWindows::isChange(const xcb_generic_event_t& event) const {
    if (eventCode(event) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return change.atom == atoms_.clientList || change.atom == atoms_.activeWindow;
}

Focusable FocusableWindows::read() const {
    const auto focusQuestion = xcb_get_input_focus(connection_.get());
    Focusable result{.windows = DesktopQuery(connection_, atoms_).take().windows};
    const auto focus = awaitReply<xcb_get_input_focus_reply>(connection_.get(), focusQuestion);
    const bool isWindow = focus && focus->focus != XCB_NONE &&
                          focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT &&
                          focus->focus != connection_.root();
    if (isWindow) {
        result.focused = focus->focus;
        if (std::ranges::find(result.windows, focus->focus) == result.windows.end()) {
            result.windows.push_back(focus->focus);
        }
    }
    return result;
}

} // namespace hollowfernpike::x11
