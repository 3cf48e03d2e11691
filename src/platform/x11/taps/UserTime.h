#pragma once

#include "platform/EventTap.h"

#include <algorithm>
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

    /// Grows with every press except repeats of a key that is held down. Releases of grabbed keys
    /// are not reported, so a press counts as a repeat if it is the same combination as the one
    /// before and follows within 1 s, or within twice the longest repeat pause if that is more.
    std::uint64_t hold() const { return hold_; }

    /// `longest` is the longest pause, in milliseconds, between two presses of a key that is held
    /// down.
    void setRepetition(xcb_timestamp_t longest) {
        longestGap_ = std::max(2 * longest, shortestGap);
    }

    void record(xcb_timestamp_t time, const platform::KeyCombination& combination) {
        const bool repeats =
            hold_ != 0 && combination == combination_ && time - time_ <= longestGap_;
        hold_ += repeats ? 0 : 1;
        time_ = time;
        combination_ = combination;
    }

private:
    static constexpr xcb_timestamp_t shortestGap = 1000;

    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    platform::KeyCombination combination_;
    xcb_timestamp_t longestGap_ = shortestGap;
    std::uint64_t hold_ = 0;
};

} // namespace hollowfernpike::x11
