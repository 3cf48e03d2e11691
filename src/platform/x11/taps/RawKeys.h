#pragma once

#include "platform/x11/keyboard/KeyboardMap.h"
#include "platform/x11/taps/TakenInput.h"

#include <functional>
#include <optional>

namespace hollowfernpike::x11 {

/// Sees key presses without taking part in them, also those that another client grabs, through raw
/// events of XInput 2.1 or later (its version must have been agreed on this connection). Repeats
/// are not seen. One at most per connection.
///
/// Presses are ignored while another client has the keyboard for itself and the screen is locked.
/// Not every locker announces itself. So once another client has taken keyboard and pointer,
/// presses are ignored, too, as long as it keeps the keyboard. But it may have taken them because
/// of a press, so the first press counts if a modifier was held before it.
class RawKeys {
public:
    struct Press {
        KeyState state;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        std::uint32_t sequence = 0; ///< number of the last request that the server had done

        bool operator==(const Press&) const = default;
    };

    /// `isScreenLocked` is asked at every press, on the thread that reads; it may be empty. With
    /// `alsoReleases` the connection gets the raw events of releases, too, for others to read.
    explicit RawKeys(const Connection& connection, std::function<bool()> isScreenLocked = {},
                     bool alsoReleases = false);

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
    std::function<bool()> isScreenLocked_;
    std::uint32_t events_;
    bool started_ = false;
    std::uint32_t startedAt_ = 0; ///< number of the request that told the modifiers
    std::uint32_t stoppedAt_ = 0; ///< number of the request that ended the last period
    freedesktop::ModifierState modifiers_ = 0;
    bool isModifierHeld_ = false;
    bool wasInputTaken_ = false; ///< when the press before was read
};

} // namespace hollowfernpike::x11
