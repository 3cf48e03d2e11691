#pragma once

#include <chrono>
#include <utility>

#include <QString>

namespace hollowfernpike::wayland {

/// Tells presses from their repeats, for desktops that deliver both. Main thread only.
class HeldKey {
public:
    /// Whether this is a press, not a repeat of the one before. `name` is of the combination,
    /// `repeatDelay` how long a key is held before it repeats.
    bool press(const QString& name, std::chrono::milliseconds repeatDelay) {
        const auto now = std::chrono::steady_clock::now();
        const bool isRecent = now < std::exchange(last_, now) + repeatDelay + longestDelivery;
        return std::exchange(name_, name) != name || !isRecent;
    }

    /// The keys have been let go.
    void letGo() { name_.clear(); }

private:
    /// A busy machine delivers a repeat as late as this. A compositor may not tell of a key-up that
    /// a window gets which takes all combinations for itself, so a press later than that is a new
    /// one.
    static constexpr std::chrono::milliseconds longestDelivery{1000};

    QString name_;
    std::chrono::steady_clock::time_point last_{};
};

} // namespace hollowfernpike::wayland
