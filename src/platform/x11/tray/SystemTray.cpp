#include "platform/x11/tray/SystemTray.h"

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/tray/TrayWatch.h"

#include <utility>

#include <xcb/xcb_aux.h>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t requestDock = 0;
constexpr std::uint8_t depthWithAlpha = 32;

std::uint8_t depthOfVisual(xcb_connection_t* connection, xcb_visualid_t visual) {
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem > 0;
         xcb_screen_next(&screens)) {
        if (const auto depth = xcb_aux_get_depth_of_visual(screens.data, visual); depth != 0) {
            return depth;
        }
    }
    return 0;
}

int environmentsScreen() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
        const Reply<char> freed(host);
    }
    return screen;
}

/// The tray may be gone before the server handles the request; that error does not matter.
void ignoreError(xcb_connection_t* connection, xcb_void_cookie_t request) {
    xcb_discard_reply(connection, request.sequence);
}

} // namespace

SystemTray::SystemTray(xcb_connection_t* toolkit, platform::RunLoop& runLoop)
    : toolkit_(toolkit), runLoop_(runLoop), selection_(toolkit, trayPrefix, environmentsScreen()) {}

bool SystemTray::isThere() {
    return selection_.owner() != XCB_NONE;
}

bool SystemTray::blendsWindows() {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        toolkit_,
        xcb_get_property(toolkit_, 0, selection_.owner(),
                         internAtom(toolkit_, "_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 0, 1),
        nullptr));
    if (!reply || reply->format != 32 || reply->value_len == 0) {
        return false;
    }
    const auto* visual = static_cast<const xcb_visualid_t*>(xcb_get_property_value(reply.get()));
    return depthOfVisual(toolkit_, *visual) == depthWithAlpha;
}

// Unmapped first: some trays keep the size of a window that is mapped when they embed it, whatever
// that size is.
void SystemTray::embed(std::uintptr_t window) {
    const auto embedded = static_cast<xcb_window_t>(window);
    xcb_unmap_window(toolkit_, embedded);
    if (!blendsWindows()) {
        const std::uint32_t ground = XCB_BACK_PIXMAP_PARENT_RELATIVE;
        xcb_change_window_attributes(toolkit_, embedded, XCB_CW_BACK_PIXMAP, &ground);
    }
    const auto receiver = selection_.owner();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = receiver;
    message.type = internAtom(toolkit_, "_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDock;
    message.data.data32[2] = embedded;
    ignoreError(toolkit_, xcb_send_event_checked(toolkit_, 0, receiver, XCB_EVENT_MASK_NO_EVENT,
                                                 reinterpret_cast<const char*>(&message)));
    xcb_flush(toolkit_);
}

std::unique_ptr<platform::Subscription> SystemTray::watch(std::function<void()> onChange) {
    auto connection = Connection::open();
    return connection == nullptr
               ? nullptr
               : std::make_unique<TrayWatch>(std::move(connection), runLoop_, std::move(onChange));
}

} // namespace hollowfernpike::x11
