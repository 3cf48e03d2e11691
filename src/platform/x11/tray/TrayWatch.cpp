#include "platform/x11/tray/TrayWatch.h"

#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <utility>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t structureEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;

void selectStructureEvents(xcb_connection_t* server, xcb_window_t window) {
    xcb_change_window_attributes(server, window, XCB_CW_EVENT_MASK, &structureEvents);
}

} // namespace

TrayWatch::TrayWatch(std::unique_ptr<Connection> connection, platform::RunLoop& runLoop,
                     std::function<void()> onChange)
    : connection_(std::move(connection)), onChange_(std::move(onChange)),
      selection_(connection_->get(), trayPrefix, connection_->screenNumber()),
      readable_(runLoop.watchReadable(connection_->descriptor(), [this] { onReadable(); })) {
    selectStructureEvents(connection_->get(), connection_->root());
    follow();
    readNews();
}

void TrayWatch::onReadable() {
    if (connection_->isLost()) {
        readable_.reset(); // it would be readable for ever
    } else if (readNews()) {
        onChange_();
    }
}

// Waiting for a reply reads events, too, and the connection does not become readable for those
// again. So this must be called after every wait.
bool TrayWatch::readNews() {
    bool changed = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
        if (isNews(*event)) {
            changed = true;
            follow();
        }
    }
    return changed;
}

bool TrayWatch::isNews(const xcb_generic_event_t& event) const {
    return selection_.isAnnouncedBy(event) ||
           (eventCode(event) == XCB_DESTROY_NOTIFY &&
            reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == tray_);
}

// The end of the tray's window is reported only if the event was selected while the window existed.
// So the owner is asked for again after selecting, until it stays the same.
void TrayWatch::follow() {
    auto* const server = connection_->get();
    tray_ = XCB_NONE;
    for (auto owner = selection_.owner(); owner != tray_; owner = selection_.owner()) {
        tray_ = owner;
        selectStructureEvents(server, owner);
    }
    xcb_flush(server);
}

} // namespace hollowfernpike::x11
