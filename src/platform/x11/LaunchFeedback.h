#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/x11/server/HiddenWindow.h"
#include "platform/x11/taps/UserTime.h"
#include "platform/x11/windows/Windows.h"

#include <cstdint>
#include <optional>
#include <string>

namespace hollowfernpike::x11 {

/// Start-up notices by the freedesktop.org protocol. Main thread only.
class LaunchFeedback final : public platform::LaunchFeedback {
public:
    /// Both outlive this object. Sends nothing while `windows` has no connection.
    LaunchFeedback(Windows& windows, UserTime& userTime);

    std::string begin(const platform::StartingApplication& application) override;
    void end(const std::string& identifier) override;
    bool mayOpenBehind() override { return false; }
    std::uint64_t holdCount() override { return userTime_.hold(); }
    void notePress(const platform::KeyCombination& combination,
                   const std::string& startupIdentifier) override;

private:
    void broadcast(const WindowReader& windows, const std::string& message);
    std::string newIdentifier();

    Windows& windows_;
    UserTime& userTime_;
    std::string prefix_; ///< of all identifiers that this object gives out
    std::uint64_t count_ = 0;
    std::optional<HiddenWindow> sender_; ///< made with the first message
};

} // namespace hollowfernpike::x11
