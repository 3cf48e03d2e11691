#pragma once

#include "platform/x11/KeyboardMap.h"
#include "platform/x11/TakenInput.h"

#include <optional>

namespace hollowfernpike::x11 {

/// Sees key presses without taking part in them, through raw events of XInput 2.1 or later (its
/// version must have been agreed on this connection): also those that some client grabs. Repeats
/// are not seen, nor what is typed after a client has taken keyboard and pointer for itself, as
/// long as it keeps the keyboard: that may be a screen locker. It may also be somebody who takes
/// them because of a press, so the first one counts if a modifier was held before. One at most per
/// connection.
class RawKeys {
public:
    struct Press {
        KeyState state;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        std::uint32_t sequence = 0; ///< number of the last request that the server had done

        bool operator==(const Press&) const = default;
    };

    explicit RawKeys(const Connection& connection);

    /// Selects the events. Waits for the server.
    void start();

    /// Selects them no longer. What the server sent before can still be read.
    void stop();

    /// The key press that an event of the connection tells of, if any. Must be shown every event
    /// in order.
    std::optional<Press> read(const xcb_generic_event_t& event);

private:
    std::uint32_t select(bool wanted) const;
    bool covers(const xcb_generic_event_t& event) const;
    bool isForAnother();

    const Connection& connection_;
    TakenInput input_;
    bool started_ = false;
    std::uint32_t startedAt_ = 0; ///< number of the request that told the modifiers
    std::uint32_t stoppedAt_ = 0; ///< number of the request that ended the last period
    ModifierState modifiers_ = 0;
    bool isModifierHeld_ = false;
    bool wasInputTaken_ = false; ///< when the press before was read
};

} // namespace hollowfernpike::x11
