#pragma once

#include <cstdint>

#include <xcb/xproto.h>

namespace hollowfernpike::x11 {

/// The server time of the last key press that a tap delivered. Window managers judge by it whether
/// a request for the focus is the user's wish, so it must be the press's own, never CurrentTime.
/// Main thread only.
class UserTime {
public:
    /// XCB_CURRENT_TIME as long as no press was seen.
    xcb_timestamp_t time() const { return time_; }

    /// Grows with every press; tells two presses of the same millisecond apart.
    std::uint64_t press() const { return press_; }

    void record(xcb_timestamp_t time) {
        time_ = time;
        ++press_;
    }

private:
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    std::uint64_t press_ = 0;
};

} // namespace hollowfernpike::x11
