#pragma once

#include "platform/FatalError.h"
#include "platform/Interface.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace hollowfernpike::platform {

/// What a tap delivers to its callback.
using EventType = std::uint32_t;
inline constexpr EventType eventKeyDown = 10;
/// To a listen-only tap, without an event: what is typed from now on goes to others than the window
/// of ours that had the keyboard focus, or to others than us at all.
inline constexpr EventType eventTapFocusLost = 0xFFFFFFFD;
inline constexpr EventType eventTapDisabledByTimeout = 0xFFFFFFFE;
inline constexpr EventType eventTapDisabledByUserInput = 0xFFFFFFFF;

/// Bits of the 64-bit flag word of a key event. Four of them are the modifiers of a shortcut
/// (`modifierMask` of the model); a backend sets the others, too, where they apply. Taps of both
/// kinds set these four alike: none of them for a press that no active tap would swallow, such as
/// one with AltGr.
namespace event_flags {
inline constexpr std::uint64_t nonCoalesced = 0x100;
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t numericPad = 0x200000;
inline constexpr std::uint64_t help = 0x400000;
inline constexpr std::uint64_t secondaryFunction = 0x800000;
} // namespace event_flags

/// One key going down. `keyCode` is the virtual key code: a position on the keyboard, whatever
/// the layout writes there. It is 64 bits wide as event fields are; valid codes are 0 to 65535.
struct KeyEvent {
    std::int64_t keyCode = 0;
    std::uint64_t flags = 0;
};

/// A combination that an active tap has to swallow: a virtual key code and exactly the modifiers
/// held with it (Shift, Control, Option, Command bits of the flag word).
struct KeyCombination {
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlags = 0;

    bool operator==(const KeyCombination&) const = default;
};

class EventTap;

/// Called on the main thread for every key-down that the tap sees, and with one of the two
/// "disabled" types, `event` null, when the tap was switched off from outside and has to be enabled
/// again. Returns `event` to let it pass or null to swallow it.
///
/// An active tap that holds its combinations as grabs has already taken the press when it calls: a
/// press that was of interest when it happened is swallowed whatever the callback returns. Such a
/// tap does not see presses while another client keeps them to itself, as an open menu does. No tap
/// sees what is typed into a screen locker, once the modifiers that were held when the locker came
/// up have been released.
using EventTapCallback = const KeyEvent* (*)(EventTap* proxy, EventType type, const KeyEvent* event,
                                             void* userInfo);

/// Attaches a tap to the main loop. Must not outlive its tap's invalidation. Main thread only.
class RunLoopSource : public Interface {
public:
    /// From here on the tap's events reach its callback.
    virtual void addToMainRunLoop() = 0;
    /// No callback runs after this returns.
    virtual void removeFromMainRunLoop() = 0;
};

/// A source of global key-downs. Made disabled and without interest. Main thread only; destroying
/// it invalidates it.
class EventTap : public Interface {
public:
    /// Starts or stops delivery. Enabling an enabled tap starts it afresh, with the keyboard as it
    /// is now; that is how a tap recovers after it reported itself disabled.
    virtual void enable(bool enabled) = 0;

    /// The combinations that matter from now on, replacing those given before. An active tap
    /// swallows exactly these and may leave every other key press unseen; a listen-only tap, and
    /// an active one that sees every key, ignores the call. Takes effect at once if enabled.
    virtual void setInterest(std::span<const KeyCombination> combinations) = 0;

    /// The combinations of interest that are seen but cannot be swallowed now, because another
    /// client of the desktop holds them; delivered as by a listen-only tap. Empty while disabled.
    virtual std::vector<KeyCombination> listenOnlyCombinations() const = 0;

    /// The combinations of interest that the tap does not even see, because somebody else of the
    /// desktop has them, such as the user's own configuration. Empty while disabled. Those who
    /// show them ask again after the tap was enabled or got another interest.
    virtual std::vector<KeyCombination> refusedCombinations() const = 0;

    /// The source that attaches this tap to the main loop. One per tap.
    virtual std::unique_ptr<RunLoopSource> createRunLoopSource() = 0;

    /// Ends the tap for good and gives back all that it held of the desktop. Idempotent.
    virtual void invalidate() = 0;
};

enum class EventTapOptions : std::uint32_t {
    active = 0,     ///< may swallow
    listenOnly = 1, ///< sees every key press, swallows none; where the desktop shows the keys of
                    ///< others to nobody, only while a window of ours has the focus
};

/// Makes taps. Main thread only.
class EventTaps : public Interface {
public:
    /// A new tap for key-downs, or null when the desktop refuses one of this kind. `userInfo` is
    /// handed to the callback unread.
    virtual std::unique_ptr<EventTap> create(EventTapOptions options, EventTapCallback callback,
                                             void* userInfo) = 0;
};

/// The virtual key code of a key going down. A code outside 0 to 65535 is a fatal error, because it
/// would stand for another key once truncated.
inline std::uint16_t checkedKeyCode(const KeyEvent& event) {
    if (event.keyCode < 0 || event.keyCode > std::numeric_limits<std::uint16_t>::max()) {
        fatalError("key code " + std::to_string(event.keyCode) + " is outside 0 to 65535");
    }
    return static_cast<std::uint16_t>(event.keyCode);
}

} // namespace hollowfernpike::platform
