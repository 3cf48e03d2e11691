#pragma once

#include "platform/x11/KeyboardMap.h"

#include <optional>

namespace hollowfernpike::x11 {

/// Sees key presses without taking part in them, through raw events of XInput 2.1 or later (its
/// version must have been agreed on this connection): also those that some client grabs. Repeats
/// are not seen. One at most per connection.
class RawKeys {
public:
    struct Press {
        KeyState state;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
    };

    explicit RawKeys(const Connection& connection);

    /// Selects the events, or no longer. Waits for the server.
    void start();
    void stop();

    /// The key press that an event of the connection tells of, if any. Must be shown every event
    /// in order.
    std::optional<Press> read(const xcb_generic_event_t& event);

private:
    void select(bool wanted) const;

    const Connection& connection_;
    bool started_ = false;
    std::uint32_t startedAt_ = 0; ///< sequence number of the request that told the modifiers
    ModifierState modifiers_ = 0;
};

} // namespace hollowfernpike::x11
