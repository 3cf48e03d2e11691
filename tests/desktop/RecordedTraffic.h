#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include <sys/types.h>
#include <xcb/record.h>
#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Counts what goes between the server and each process of a display (RECORD). It watches from its
/// construction on.
class RecordedTraffic {
public:
    /// The key events that are delivered, raw ones included.
    static RecordedTraffic ofKeyEvents(const std::string& display);

    /// The requests of this kind, by its number in the core protocol.
    static RecordedTraffic ofRequests(const std::string& display, std::uint8_t kind);

    RecordedTraffic(const RecordedTraffic&) = delete;
    RecordedTraffic& operator=(const RecordedTraffic&) = delete;
    ~RecordedTraffic();

    /// How many went to or came from this process, as far as is known yet. Traffic becomes known in
    /// the order in which it happened, across all processes.
    std::size_t of(pid_t process);

    /// The same in bytes.
    std::size_t bytesOf(pid_t process);

private:
    RecordedTraffic(const std::string& display, const xcb_record_range_t& range);

    struct Amount {
        std::size_t count = 0;
        std::size_t bytes = 0;
    };

    void readOn();
    pid_t processOf(std::uint32_t client);

    xcb_connection_t* control_;
    xcb_connection_t* data_;
    xcb_record_context_t context_;
    unsigned int reports_ = 0;
    std::map<pid_t, Amount> amounts_;
};

} // namespace hollowfernpike::test
