#pragma once

#include "support/WaylandConnection.h"

#include <string>

namespace hollowfernpike::test {

/// The keyboard map of a session, as all its clients learn of it.
class SeatKeymap {
public:
    /// The connection outlives this.
    explicit SeatKeymap(WaylandConnection& connection);
    SeatKeymap(const SeatKeymap&) = delete;
    SeatKeymap& operator=(const SeatKeymap&) = delete;
    ~SeatKeymap();

    /// Whether the session has a keyboard by now.
    bool isThere();

    /// What clients had got by the last exchange with the compositor.
    const std::string& text() const { return text_; }

private:
    void listen();

    WaylandConnection& connection_;
    wl_seat* seat_;
    wl_keyboard* keyboard_ = nullptr;
    bool isThere_ = false;
    std::string text_;
};

} // namespace hollowfernpike::test
