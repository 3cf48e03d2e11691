#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/gnome/ShellExtension.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::gnome {

/// Launches as the shell's own: by a token with the time of the key press. Main thread only.
class ShellLaunches final : public platform::LaunchFeedback {
public:
    /// The extension outlives this object.
    explicit ShellLaunches(ShellExtension& extension) : extension_(extension) {}

    std::string begin(const platform::StartingApplication& application) override {
        return extension_.beginLaunch(application.announces ? application.bundleIdentifier : "");
    }
    void end(const std::string& identifier) override { extension_.endLaunch(identifier); }

    /// The shell shows a new window in front unless the user has gone on to something else.
    bool mayOpenBehind() override { return false; }
    std::uint64_t holdCount() override { return presses_; }

    /// To be called by taps when the user has pressed a combination.
    void countPress() { ++presses_; }

private:
    ShellExtension& extension_;
    std::uint64_t presses_ = 0;
};

} // namespace hollowfernpike::gnome
