#pragma once

#include "support/ChildProcess.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A whole private session on the Wayland compositor weston: home directory, session bus and a
/// screen that nobody looks at. There is no keyboard, and nobody but their program can tell what
/// windows there are.
class WestonDesktop {
public:
    /// Ready for clients on return; throws std::runtime_error with what weston says if it does not
    /// get there.
    WestonDesktop();

    std::filesystem::path dataHome() const { return folders_.dataHome(); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    ChildProcess& weston() { return *weston_; }
    SessionBus& bus() { return bus_; }

    /// Starts a program in this session.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& arguments,
                                        const Environment& changes = {}) const;

private:
    bool isReady() const;

    SessionFolders folders_{std::make_shared<TemporaryDirectory>()};
    Environment environment_;
    SessionBus bus_;
    std::unique_ptr<ChildProcess> weston_;
};

} // namespace hollowfernpike::test
