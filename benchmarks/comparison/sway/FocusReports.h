#pragma once

#include "comparison/Fifo.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// Hears from an application when a window of its gets the keys.
class FocusReports {
public:
    using Clock = std::chrono::steady_clock;

    /// In this folder the application reports.
    explicit FocusReports(const std::filesystem::path& folder) : fifo_(folder / "focus") {}

    /// With these options the window program does so.
    std::vector<std::string> options() const { return {"--log", fifo_.path()}; }

    /// Forgets what it has told so far.
    void forget();

    /// Waits until it gets the keys and returns the time by its own clock, so that it does not
    /// count how soon we hear of it. Absent after some waiting.
    std::optional<Clock::time_point> whenFocused();

private:
    bool readMore();

    Fifo fifo_;
    std::string unread_;
};

} // namespace hollowfernpike::bench
