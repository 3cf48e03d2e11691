#pragma once

#include "platform/WindowOwners.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/ClientProcesses.h"
#include "platform/x11/Connection.h"
#include "platform/x11/DesktopQuery.h"
#include "platform/x11/Events.h"
#include "platform/x11/UserTime.h"
#include "platform/x11/WindowQueries.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Who a window is: what is kept of it from one key press to the next.
struct WindowIdentity {
    std::optional<std::int32_t> clientProcess;
    std::string windowClass;
    std::int32_t layer = 0;
    platform::WindowFacts facts;
    std::optional<platform::WindowOwner> owner; ///< once somebody wanted to know
};

/// A managed window at the moment of a snapshot.
struct WindowRecord {
    xcb_window_t window = XCB_NONE;
    bool isHidden = false;
    std::optional<std::uint32_t> desktop;
    WindowIdentity* identity = nullptr; ///< never null
};

/// All managed windows.
struct Snapshot {
    std::vector<WindowRecord> windows;     ///< front to back
    std::vector<xcb_window_t> oldestFirst; ///< as far as the window manager knows
    std::optional<std::uint32_t> currentDesktop;
    bool canRestack = false;

    /// Whether the window is on the current desktop, or on all of them.
    bool isHere(const WindowRecord& record) const;

    /// The windows in the order in which they first appeared; those of unknown age last.
    std::vector<const WindowRecord*> byAge() const;
};

/// What a snapshot is wanted for.
enum class SnapshotUse : std::uint8_t { matching = 1, activation = 2, listing = 4 };

/// The windows of the display, asked for in one round trip if all of them are known already, in two
/// if some are new. What a window tells once is kept as long as it belongs to the same process and
/// has the same class (programs do change that); who owns it, as long as the window owners stand by
/// their answers. Main thread only.
class Windows {
public:
    /// Long enough for one pass through the launcher, too short for a person to change anything.
    static constexpr std::chrono::milliseconds onePass{50};

    /// The first three outlive this object. A snapshot of `longestReuse` or older is not handed out
    /// again; with zero, none is.
    Windows(const Connection& connection, platform::WindowOwners& owners, const UserTime& userTime,
            std::chrono::milliseconds longestReuse = onePass);

    const Connection& connection() const { return connection_; }
    const Atoms& atoms() const { return atoms_; }
    Events& events() { return events_; }

    /// Asks the server. Null if it is gone. The snapshot stands until the next reading.
    const Snapshot* read(SnapshotUse use);

    /// The snapshot that was read for the key press that is still the last one; null if there is
    /// none, or it is too old. Good once for each use, reading it included: who asks twice for the
    /// same press wants to see what has changed in between.
    const Snapshot* takeOfThisPress(SnapshotUse use);

    /// The application behind a window of the snapshot that stands.
    const platform::WindowOwner& ownerOf(const WindowRecord& record);

private:
    using States = std::unordered_map<xcb_window_t, WindowState>;

    std::vector<xcb_window_t> knownWindows() const;
    std::vector<xcb_window_t> unknownAmong(const std::vector<xcb_window_t>& windows,
                                           const States& states) const;
    void learn(const std::vector<xcb_window_t>& unknown, States& states);
    void assemble(const DesktopState& desktop, const States& states);
    void forgetVanished();
    void forgetChangedOwners();

    const Connection& connection_;
    platform::WindowOwners& owners_;
    const UserTime& userTime_;
    std::chrono::milliseconds longestReuse_;
    Atoms atoms_;
    ClientProcesses processes_;
    Events events_;

    std::unordered_map<xcb_window_t, WindowIdentity> identities_;
    std::uint64_t ownersGeneration_ = 0;
    Snapshot snapshot_;
    std::uint64_t snapshotPress_ = 0;
    std::uint8_t snapshotUses_ = 0; ///< those that it is no longer handed out for
    std::chrono::steady_clock::time_point snapshotTime_;
};

} // namespace hollowfernpike::x11
