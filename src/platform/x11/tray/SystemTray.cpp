#include "platform/x11/tray/SystemTray.h"

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Properties.h"
#include "platform/x11/taps/EventKinds.h"

#include <utility>

#include <xcb/xcb_aux.h>

namespace hollowfernpike::x11 {

namespace {

/// The selection that the tray of a screen owns (System Tray Protocol Specification 0.3).
constexpr auto trayPrefix = "_NET_SYSTEM_TRAY_S";
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

void selectStructureEvents(xcb_connection_t* server, xcb_window_t window) {
    constexpr std::uint32_t structureEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(server, window, XCB_CW_EVENT_MASK, &structureEvents);
}

/// Learns of trays that come and go, from the message in which a new one names itself (Inter-Client
/// Communication Conventions Manual 2.0, 2.8) and from the end of its window.
class TrayWatch final : public platform::Subscription {
public:
    /// The loop outlives this.
    TrayWatch(std::unique_ptr<Connection> connection, platform::RunLoop& runLoop,
              std::function<void()> onChange)
        : connection_(std::move(connection)), onChange_(std::move(onChange)),
          selection_(connection_->get(), trayPrefix, connection_->screenNumber()),
          readable_(runLoop.watchReadable(connection_->descriptor(), [this] { onReadable(); })) {
        selectStructureEvents(connection_->get(), connection_->root());
        follow();
        readNews();
    }

private:
    void onReadable() {
        if (connection_->isLost()) {
            readable_.reset(); // it would be readable for ever
        } else if (readNews()) {
            onChange_();
        }
    }

    // Waiting for a reply reads events, too, and the connection does not become readable for those
    // again. So this must be called after every wait.
    bool readNews() {
        bool changed = false;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
            if (isNews(*event)) {
                changed = true;
                follow();
            }
        }
        return changed;
    }

    bool isNews(const xcb_generic_event_t& event) const {
        return selection_.isAnnouncedBy(event) ||
               (eventCode(event) == XCB_DESTROY_NOTIFY &&
                reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == tray_);
    }

    // The end of the tray's window is reported only if the event was selected while the window
    // existed. So the owner is asked for again after selecting, until it stays the same.
    void follow() {
        auto* const server = connection_->get();
        tray_ = XCB_NONE;
        for (auto owner = selection_.owner(); owner != tray_; owner = selection_.owner()) {
            tray_ = owner;
            selectStructureEvents(server, owner);
        }
        xcb_flush(server);
    }

    std::unique_ptr<Connection> connection_;
    std::function<void()> onChange_;
    ManagerSelection selection_;
    xcb_window_t tray_ = XCB_NONE;
    std::unique_ptr<platform::Subscription> readable_;
};

} // namespace

SystemTray::SystemTray(xcb_connection_t* toolkit, platform::RunLoop& runLoop)
    : toolkit_(toolkit), runLoop_(runLoop), selection_(toolkit, trayPrefix, environmentsScreen()) {}

bool SystemTray::isThere() {
    return selection_.owner() != XCB_NONE;
}

bool SystemTray::blendsWindows() {
    const auto visual = numberOf(readProperty(toolkit_, selection_.owner(),
                                              internAtom(toolkit_, "_NET_SYSTEM_TRAY_VISUAL"),
                                              XCB_ATOM_VISUALID, 1));
    return visual && depthOfVisual(toolkit_, *visual) == depthWithAlpha;
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
