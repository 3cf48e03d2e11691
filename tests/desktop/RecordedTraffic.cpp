#include "desktop/RecordedTraffic.h"

#include "desktop/XReplies.h"

#include <xcb/res.h>
#include <xcb/xcb_aux.h>
#include <xcb/xcbext.h>
#include <xcb/xinput.h>

namespace hollowfernpike::test {

namespace {

bool isOfKey(const xcb_generic_event_t& event) {
    if (event.response_type != XCB_GE_GENERIC) {
        return event.response_type == XCB_KEY_PRESS || event.response_type == XCB_KEY_RELEASE;
    }
    const auto kind = reinterpret_cast<const xcb_ge_generic_event_t&>(event).event_type;
    return kind == XCB_INPUT_KEY_PRESS || kind == XCB_INPUT_KEY_RELEASE ||
           kind == XCB_INPUT_RAW_KEY_PRESS || kind == XCB_INPUT_RAW_KEY_RELEASE;
}

// A report holds one request, or some events.
std::size_t countIn(const xcb_record_enable_context_reply_t& report) {
    constexpr std::uint8_t fromServer = 0;
    constexpr std::uint8_t fromClient = 1;
    constexpr std::size_t eventSize = 32;
    if (report.category != fromServer) {
        return report.category == fromClient ? 1 : 0;
    }
    const auto size = static_cast<std::size_t>(xcb_record_enable_context_data_length(&report));
    const auto* const events = xcb_record_enable_context_data(&report);
    std::size_t found = 0;
    for (std::size_t offset = 0; offset + eventSize <= size; offset += eventSize) {
        if (isOfKey(reinterpret_cast<const xcb_generic_event_t&>(events[offset]))) {
            ++found;
        }
    }
    return found;
}

} // namespace

RecordedTraffic RecordedTraffic::ofKeyEvents(const std::string& display) {
    xcb_record_range_t range{};
    range.delivered_events = {XCB_KEY_PRESS, XCB_GE_GENERIC};
    return {display, range};
}

RecordedTraffic RecordedTraffic::ofRequests(const std::string& display, std::uint8_t kind) {
    xcb_record_range_t range{};
    range.core_requests = {kind, kind};
    return {display, range};
}

RecordedTraffic::RecordedTraffic(const std::string& display, const xcb_record_range_t& range)
    : control_(xcb_connect(display.c_str(), nullptr)), data_(xcb_connect(display.c_str(), nullptr)),
      context_(xcb_generate_id(control_)) {
    const xcb_record_client_spec_t everybody = XCB_RECORD_CS_ALL_CLIENTS;
    xcb_record_create_context(control_, context_, 0, 1, 1, &everybody, &range);
    xcb_aux_sync(control_);
    const auto reports = xcb_record_enable_context(data_, context_);
    reports_ = reports.sequence;
    held(xcb_record_enable_context_reply(data_, reports, nullptr)); // says that it has begun
}

RecordedTraffic::~RecordedTraffic() {
    xcb_disconnect(data_);
    xcb_disconnect(control_);
}

std::size_t RecordedTraffic::of(pid_t process) {
    readOn();
    return counts_[process];
}

void RecordedTraffic::readOn() {
    void* report = nullptr;
    while (xcb_poll_for_reply(data_, reports_, &report, nullptr) == 1 && report != nullptr) {
        const auto traffic = held(static_cast<xcb_record_enable_context_reply_t*>(report));
        if (const auto found = countIn(*traffic); found > 0) {
            counts_[processOf(traffic->xid_base)] += found;
        }
    }
}

pid_t RecordedTraffic::processOf(std::uint32_t client) {
    const xcb_res_client_id_spec_t wanted{.client = client,
                                          .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = held(xcb_res_query_client_ids_reply(
        control_, xcb_res_query_client_ids(control_, 1, &wanted), nullptr));
    if (!reply || reply->num_ids == 0) {
        return 0;
    }
    const auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
    return static_cast<pid_t>(*xcb_res_client_id_value_value(id.data));
}

} // namespace hollowfernpike::test
