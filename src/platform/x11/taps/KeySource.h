#pragma once

#include "platform/EventTap.h"
#include "platform/Interface.h"
#include "platform/x11/keyboard/KeyboardMap.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace hollowfernpike::x11 {

/// A key press on its way to a tap's callback.
struct KeyPress {
    platform::KeyEvent event;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
};

/// A way to get at key presses on one connection. Made stopped. Main thread only.
class KeySource : public platform::Interface {
public:
    virtual void setInterest(std::span<const platform::KeyCombination> combinations) = 0;
    virtual std::vector<platform::KeyCombination> listenOnlyCombinations() const = 0;

    /// Called when these have changed by themselves. The owner's to set.
    std::function<void()> onListenOnlyChange;

    /// Starts with this map, or goes on with it if already started.
    virtual void start(const KeyboardMap& map) = 0;

    /// Gives back what it holds of the server.
    virtual void stop() = 0;

    /// The key press to report for an event of the connection, if any. While started it must be
    /// shown every event in order.
    virtual std::optional<KeyPress> read(const xcb_generic_event_t& event) = 0;

    /// Whether the event that was read last took the keyboard focus from our windows, as far as
    /// that matters to this source.
    virtual bool hasLostFocus() const { return false; }
};

} // namespace hollowfernpike::x11
