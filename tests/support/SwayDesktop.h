#pragma once

#include "support/SwayIpc.h"
#include "support/WaylandDesktop.h"

#include <filesystem>
#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A private session on sway. It has no keyboard until there is a VirtualKeyboard. Where the tests
/// are root's, sway alone runs as an ordinary user.
class SwayDesktop final : public WaylandDesktop {
public:
    /// `configuration` are lines for sway's configuration file. Ready for clients on return; throws
    /// std::runtime_error with what sway says if it does not get there.
    explicit SwayDesktop(const std::string& configuration = {},
                         Home home = std::make_shared<TemporaryDirectory>());

    /// A folder in which sway, too, and what it starts may read and write: sway's own home.
    const std::filesystem::path& commonGround() const { return ground(); }

    const SwayIpc& ipc() const { return ipc_; }

    /// Writes the configuration anew with these lines. Sway knows it after ipc().reload().
    void configure(const std::string& configuration) const;

private:
    std::filesystem::path configurationFile() const { return ground() / "sway.conf"; }
    std::string controlSocket() const { return ground() / "sway.sock"; }
    std::unique_ptr<ChildProcess> startCompositor() override;
    bool isReady() override;

    SwayIpc ipc_{controlSocket()};
};

} // namespace hollowfernpike::test
