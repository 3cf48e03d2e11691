#pragma once

#include "desktop/kde/KWinSession.h"
#include "desktop/wayland/StackingStory.h"

#include <memory>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// The desktop entry by which KWin lets the utility see windows.
inline KWinRight rightOfTheUtility() {
    return {.identifier = "app.hollowfernpike.Hollowfernpike",
            .program = HFP_PROGRAM,
            .interfaces = "org_kde_plasma_window_management"};
}

/// As stories begin: with two virtual desktops and the utility installed.
inline KWinSettings settingsOfStories(const KeyboardLayout& layout = {}) {
    return {.layout = layout, .desktops = 2, .rights = {rightOfTheUtility()}};
}

/// A story that goes as it can on KWin alone.
class KWinStory : public StackingStory {
public:
    explicit KWinStory(const KWinSettings& settings = settingsOfStories())
        : KWinStory(std::make_unique<KWinSession>(settings)) {}

    KWinDesktop& desktop;
    KWinPager& kwin;

    void minimize(pid_t process) const override { kwin.minimize(process); }

    std::vector<pid_t> order() const override {
        std::vector<pid_t> processes;
        for (const auto& window : kwin.windows()) {
            processes.insert(processes.begin(), window.process);
        }
        return processes;
    }

    void restart() override { onKWin().restart(); }

private:
    explicit KWinStory(std::unique_ptr<KWinSession> place)
        : StackingStory(std::move(place)), desktop(onKWin().desktop), kwin(onKWin().kwinPager) {}

    KWinSession& onKWin() { return static_cast<KWinSession&>(session()); }
};

} // namespace hollowfernpike::test
