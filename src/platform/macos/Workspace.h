#pragma once

#include "platform/MainQueue.h"
#include "platform/Workspace.h"

namespace hollowfernpike::macos {

/// The system opens applications, and is to see to it that none is started twice.
class Workspace final : public platform::Workspace {
public:
    /// The queue outlives this, and every request that has a completion.
    explicit Workspace(platform::MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    void openApplication(const std::string& path, const platform::OpenConfiguration& configuration,
                         OpenCompletion completion) override;

private:
    platform::MainQueue& mainQueue_;
};

} // namespace hollowfernpike::macos
