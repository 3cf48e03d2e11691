#pragma once

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/ClientProcesses.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Events.h"
#include "platform/x11/windows/DesktopQuery.h"
#include "platform/x11/windows/Snapshot.h"
#include "platform/x11/windows/WindowQueries.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace hollowfernpike::x11 {

/// Reads the windows of the display, in one round trip if all of them are known already, in two if
/// some are new. What a window tells once is kept as long as its process and its class stay the
/// same (programs do change the class); its owner, until platform::WindowOwners has a new
/// generation. Main thread only.
class WindowReader {
public:
    /// `owners` outlives this object.
    WindowReader(std::unique_ptr<Connection> connection, platform::WindowOwners& owners);

    const Connection& connection() const { return *connection_; }
    const Atoms& atoms() const { return atoms_; }
    Events& events() { return events_; }

    /// Asks the server. Null if it is gone. The snapshot is valid until the next call.
    const Snapshot* read();

    /// The application behind a window of the latest snapshot.
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

    std::unique_ptr<Connection> connection_;
    platform::WindowOwners& owners_;
    Atoms atoms_{*connection_};
    ClientProcesses processes_{*connection_};
    Events events_{*connection_};

    std::unordered_map<xcb_window_t, WindowIdentity> identities_;
    std::uint64_t ownersGeneration_ = 0;
    Snapshot snapshot_;
};

} // namespace hollowfernpike::x11
