#pragma once

#include "desktop/gnome/GnomeSession.h"
#include "desktop/wayland/StackingStory.h"

#include <memory>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// A story that goes as it can on GNOME Shell alone.
class GnomeStory : public StackingStory {
public:
    explicit GnomeStory(const GnomeSettings& settings = {})
        : GnomeStory(std::make_unique<GnomeSession>(settings)) {}

    GnomeDesktop& desktop;
    const GnomePager& gnome;

    void minimize(pid_t process) const override { gnome.minimize(process); }

    std::vector<pid_t> order() const override {
        std::vector<pid_t> processes;
        for (const auto& window : gnome.windows()) {
            processes.insert(processes.begin(), window.process);
        }
        return processes;
    }

    void restart() override {
        desktop.restart();
        static_cast<GnomeSession&>(session()).keys.reconnect();
    }

private:
    explicit GnomeStory(std::unique_ptr<GnomeSession> place)
        : StackingStory(std::move(place)), desktop(static_cast<GnomeSession&>(session()).desktop),
          gnome(static_cast<GnomeSession&>(session()).gnomePager) {}
};

} // namespace hollowfernpike::test
