#include "platform/x11/windows/StartupMonitor.h"

#include "platform/x11/server/Reply.h"

#include <stdexcept>

#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>

namespace hollowfernpike::test {

namespace {

std::string textOf(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace

StartupMonitor::StartupMonitor(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
    display_ = sn_xcb_display_new(connection_, nullptr, nullptr);
    context_ = sn_monitor_context_new(display_, 0, &StartupMonitor::onEvent, this, nullptr);
    notices();
}

StartupMonitor::~StartupMonitor() {
    sn_monitor_context_unref(context_);
    sn_display_unref(display_);
    xcb_disconnect(connection_);
}

const std::vector<StartupMonitor::Notice>& StartupMonitor::notices() {
    const x11::Reply<xcb_get_input_focus_reply_t> fence(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        sn_xcb_display_process_event(display_, event.get());
    }
    return notices_;
}

void StartupMonitor::onEvent(SnMonitorEvent* event, void* self) {
    const auto type = sn_monitor_event_get_type(event);
    auto* sequence = sn_monitor_event_get_startup_sequence(event);
    if (type != SN_MONITOR_EVENT_INITIATED && type != SN_MONITOR_EVENT_COMPLETED) {
        return;
    }
    static_cast<StartupMonitor*>(self)->notices_.push_back({
        .event = type == SN_MONITOR_EVENT_INITIATED ? "new" : "remove",
        .id = textOf(sn_startup_sequence_get_id(sequence)),
        .name = textOf(sn_startup_sequence_get_name(sequence)),
        .binary = textOf(sn_startup_sequence_get_binary_name(sequence)),
        .windowClass = textOf(sn_startup_sequence_get_wmclass(sequence)),
        .application = textOf(sn_startup_sequence_get_application_id(sequence)),
        .screen = sn_startup_sequence_get_screen(sequence),
        .time = sn_startup_sequence_get_timestamp(sequence),
    });
}

} // namespace hollowfernpike::test
