#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/gnome/ShellExtension.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::gnome {

/// Launches as the shell's own: by a token with the time of the key press. The shell shows a busy
/// pointer until the token is used, so programs that announce nothing get none; their windows come
/// to the front all the same. Main thread only.
class ShellLaunches final : public platform::LaunchFeedback {
public:
    /// The extension outlives this object.
    explicit ShellLaunches(ShellExtension& extension) : extension_(extension) {}

    std::string begin(const platform::StartingApplication& application) override {
        return application.announces ? extension_.beginLaunch(application.bundleIdentifier)
                                     : std::string{};
    }
    void end(const std::string& identifier) override { extension_.endLaunch(identifier); }

    /// The shell gives every new window the keys.
    bool mayOpenBehind() override { return false; }
    std::uint64_t holdCount() override { return presses_; }
    void notePress(const platform::KeyCombination& /*combination*/,
                   const std::string& /*startupIdentifier*/) override {
        extension_.forgetPressTime();
        countPress();
    }

    /// To be called by taps when the user has pressed a combination.
    void countPress() { ++presses_; }

private:
    ShellExtension& extension_;
    std::uint64_t presses_ = 0;
};

} // namespace hollowfernpike::gnome
