#pragma once

#include "platform/x11/KeyboardMap.h"

#include <map>
#include <span>
#include <vector>

namespace hollowfernpike::x11 {

/// The passive key grabs of one client on the root window. The server freezes the keyboard with
/// each grabbed press until this client gives it back, so whoever reads the connection must do that
/// at once.
class KeyGrabs {
public:
    explicit KeyGrabs(const Connection& connection);

    /// Grabs every press of these combinations and gives back what else was held; what stays is
    /// not touched. Returns the combinations of which another client holds a part: nothing of them
    /// is held. Combinations that the map cannot produce are left out. Waits for the server.
    std::vector<platform::KeyCombination>
    update(const KeyboardMap& map, std::span<const platform::KeyCombination> combinations);

    /// Gives everything back. Waits for the server, so that others can have it from here on.
    void release();

    /// Whether such a press was held when the server sent an event with this sequence number.
    bool held(const KeyState& press, std::uint32_t sequence) const;

private:
    using Wanted = std::map<KeyState, std::size_t>;

    void ungrabUnwanted(const Wanted& wanted);
    std::vector<bool> grabMissing(const Wanted& wanted, std::size_t combinationCount);

    const Connection& connection_;
    std::map<KeyState, std::uint32_t> held_; ///< with the sequence number of the request
};

} // namespace hollowfernpike::x11
