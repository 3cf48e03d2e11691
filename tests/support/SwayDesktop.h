#pragma once

#include "support/ChildProcess.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"
#include "support/SwayIpc.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A whole private session on the Wayland compositor sway: home directory, session bus and a screen
/// that nobody looks at, none of them shared with the desktop that the tests run on. It has no
/// keyboard until there is a VirtualKeyboard.
///
/// Sway does not work for root. Where the tests are root's, it alone runs as an ordinary user.
class SwayDesktop {
public:
    /// `configuration` are lines for sway's configuration file. Ready for clients on return; throws
    /// std::runtime_error with what sway says if it does not get there.
    explicit SwayDesktop(const std::string& configuration = {},
                         Home home = std::make_shared<TemporaryDirectory>());

    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }

    /// A folder in which sway, too, and what it starts may read and write.
    const std::filesystem::path& commonGround() const { return ground_.path(); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// The path of the compositor's socket.
    const std::string& waylandSocket() const { return waylandSocket_; }

    const SwayIpc& ipc() const { return ipc_; }
    ChildProcess& sway() { return *sway_; }
    SessionBus& bus() { return bus_; }

    /// Writes the configuration anew with these lines. Sway knows it after ipc().reload().
    void configure(const std::string& configuration) const;

    /// Has the session see this file or folder below the machine's /usr/share, too.
    void showOfMachine(const std::filesystem::path& part) const { folders_.showOfMachine(part); }

    /// Starts a program in this session.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& arguments,
                                        const Environment& changes = {}) const;

private:
    std::filesystem::path configurationFile() const { return ground_.path() / "sway.conf"; }
    std::string controlSocket() const { return ground_.path() / "sway.sock"; }
    std::unique_ptr<ChildProcess> startSway() const;
    bool isReady();

    SessionFolders folders_;
    TemporaryDirectory ground_; ///< sway's home and runtime directory
    Environment environment_;
    SessionBus bus_;
    SwayIpc ipc_;
    std::string waylandSocket_;
    std::unique_ptr<ChildProcess> sway_;
};

} // namespace hollowfernpike::test
