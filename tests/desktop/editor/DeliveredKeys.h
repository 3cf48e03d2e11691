#pragma once

#include <cstddef>
#include <map>
#include <string>

#include <sys/types.h>
#include <xcb/record.h>
#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Counts the key events that the server delivers to each process of a display, raw ones included
/// (RECORD). It watches from its construction on.
class DeliveredKeys {
public:
    explicit DeliveredKeys(const std::string& display);
    DeliveredKeys(const DeliveredKeys&) = delete;
    DeliveredKeys& operator=(const DeliveredKeys&) = delete;
    ~DeliveredKeys();

    /// How many have been delivered to this process, as far as is known yet. What was delivered
    /// earlier to whomever is known earlier.
    std::size_t to(pid_t process);

private:
    void readOn();
    void count(const xcb_record_enable_context_reply_t& report);
    pid_t processOf(std::uint32_t client);

    xcb_connection_t* control_;
    xcb_connection_t* data_;
    xcb_record_context_t context_;
    unsigned int reports_ = 0;
    std::map<pid_t, std::size_t> counts_;
};

} // namespace hollowfernpike::test
