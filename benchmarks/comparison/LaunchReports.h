#pragma once

#include "comparison/Fifo.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace hollowfernpike::bench {

/// Tells when the program whose launches are measured has started.
class LaunchReports {
public:
    using Clock = std::chrono::steady_clock;

    /// In this folder the program reports. It must be open to all who launch.
    explicit LaunchReports(const std::filesystem::path& folder);

    /// What launches the program.
    const std::string& command() const { return command_; }

    /// Waits for the next launch and for the program's end. Absent if there is none after some
    /// waiting; throws std::runtime_error if the program does not end.
    std::optional<Clock::time_point> whenStarted() const;

private:
    Fifo fifo_;
    std::string command_;
};

} // namespace hollowfernpike::bench
