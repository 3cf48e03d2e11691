#pragma once

#include "platform/x11/grabs/FocusableWindows.h"
#include "platform/x11/keyboard/KeyboardMap.h"

#include <map>
#include <set>
#include <span>
#include <vector>

namespace hollowfernpike::x11 {

/// The passive key grabs of one client. Each grabbed press freezes the keyboard until this client
/// gives it back, so the reader of the connection must do that at once.
///
/// The other kind of grab (asynchronous) freezes nothing, but what is typed until it is given back
/// is lost. Measured on Xvfb 21.1 with a letter typed right after the bound press, before its
/// release, 30 times each:
///
///   the client is           synchronous                      asynchronous
///   idle                    0 lost, later by 0.1 ms at most  0 lost
///   among 8 busy programs   0 lost, later by 23 ms at most   14 letters and key-ups lost
///   evicted from memory     0 lost, later by 8 ms at most    16 letters and 15 key-ups lost
///   stopped (SIGSTOP)       all wait for SIGCONT, 0 lost     what comes before the release is lost
///
/// Even idle, the other kind lost the key-up of 60 of 500 presses that were released at once. So we
/// freeze: lost letters would be felt every day. Only while the program is stopped between a press
/// and the moment when it gives the keyboard back does everybody wait, until it goes on or ends.
class KeyGrabs {
public:
    explicit KeyGrabs(const Connection& connection);

    /// Grabs every press of these combinations on the root window and gives back all other presses;
    /// those already held are not touched. Returns the combinations of which another client holds a
    /// press: nothing of them is held. Presses that were refused before are tried first, and the
    /// others of their combination only if that succeeds, so that nothing is swallowed meanwhile.
    /// Combinations that the map cannot produce are left out. Waits for the server.
    std::vector<platform::KeyCombination>
    update(const KeyboardMap& map, std::span<const platform::KeyCombination> combinations);

    /// Sets the windows on which presses with the Super key are grabbed besides the root, now and
    /// after later updates. They replace those given before; the focused one is grabbed again even
    /// if it was among them. Does not wait for the server; what other clients hold there remains
    /// theirs.
    void setWindows(Focusable focusable);

    /// Gives everything back, and forgets the windows. Waits for the server, so that others can
    /// have it from here on.
    void release();

    /// Whether this press was grabbed when the server sent an event with this sequence number.
    bool held(const KeyState& press, std::uint32_t sequence) const;

private:
    struct Wish {
        std::size_t combination;
        bool isWithSuper;
    };
    struct Hold {
        std::uint32_t sequence; ///< of the request
        bool isWithSuper;
    };
    using Wishes = std::map<KeyState, Wish>;

    void ungrabUnwanted(const Wishes& wishes);
    void grabMissing(const Wishes& wishes, bool refusedBefore, std::vector<bool>& refused);
    void grabOn(xcb_window_t window, const KeyState& press);
    void ungrabOn(xcb_window_t window, const KeyState& press);

    const Connection& connection_;
    std::map<KeyState, Hold> held_;
    std::set<KeyState> refused_;        ///< another client held them when last tried
    std::vector<xcb_window_t> windows_; ///< sorted
    bool isUnconfirmed_ = false;        ///< whether a request may still be pending
};

} // namespace hollowfernpike::x11
