#pragma once

#include "platform/LaunchFeedback.h"

#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A desktop with start-up notices that only writes them down.
class FakeLaunchFeedback final : public platform::LaunchFeedback {
public:
    std::vector<platform::StartingApplication> begun;
    std::vector<std::string> ended;

    std::string begin(const platform::StartingApplication& application) override {
        begun.push_back(application);
        return "start-" + std::to_string(begun.size()) + "_TIME4711";
    }

    void end(const std::string& identifier) override { ended.push_back(identifier); }

    bool opensBehind = false;
    bool mayOpenBehind() override { return opensBehind; }

    std::uint64_t holds = 1;
    std::uint64_t holdCount() override { return holds; }
};

} // namespace hollowfernpike::test
