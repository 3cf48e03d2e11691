#include "desktop/RecordedTraffic.h"

#include "desktop/XReplies.h"

#include <cstring>
#include <span>

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

/// The length of the request that begins here, as far as it lies here; 0 if there is none.
std::size_t requestLength(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t unit = 4;
    std::uint16_t units = 0;
    std::uint32_t manyUnits = 0; // of a large request, behind a zero
    if (bytes.size() < unit) {
        return 0;
    }
    std::memcpy(&units, bytes.data() + 2, sizeof units);
    if (units == 0 && bytes.size() >= 2 * unit) {
        std::memcpy(&manyUnits, bytes.data() + unit, sizeof manyUnits);
    }
    const auto length = unit * (units > 0 ? units : manyUnits);
    return length <= bytes.size() ? length : bytes.size();
}

std::size_t requestsIn(std::span<const std::uint8_t> bytes) {
    std::size_t found = 0;
    for (auto length = requestLength(bytes); length > 0; length = requestLength(bytes)) {
        bytes = bytes.subspan(length);
        ++found;
    }
    return found;
}

std::size_t keyEventsIn(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t eventSize = 32;
    std::size_t found = 0;
    for (; bytes.size() >= eventSize; bytes = bytes.subspan(eventSize)) {
        if (isOfKey(reinterpret_cast<const xcb_generic_event_t&>(bytes.front()))) {
            ++found;
        }
    }
    return found;
}

// A report holds some requests, or some events.
std::size_t countIn(const xcb_record_enable_context_reply_t& report) {
    constexpr std::uint8_t fromServer = 0;
    constexpr std::uint8_t fromClient = 1;
    const std::span bytes(xcb_record_enable_context_data(&report),
                          static_cast<std::size_t>(xcb_record_enable_context_data_length(&report)));
    switch (report.category) {
    case fromServer:
        return keyEventsIn(bytes);
    case fromClient:
        return requestsIn(bytes);
    default:
        return 0;
    }
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
    return amounts_[process].count;
}

std::size_t RecordedTraffic::bytesOf(pid_t process) {
    readOn();
    return amounts_[process].bytes;
}

void RecordedTraffic::readOn() {
    void* report = nullptr;
    while (xcb_poll_for_reply(data_, reports_, &report, nullptr) == 1 && report != nullptr) {
        const auto traffic = held(static_cast<xcb_record_enable_context_reply_t*>(report));
        if (const auto found = countIn(*traffic); found > 0) {
            auto& amount = amounts_[processOf(traffic->xid_base)];
            amount.count += found;
            amount.bytes +=
                static_cast<std::size_t>(xcb_record_enable_context_data_length(traffic.get()));
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
