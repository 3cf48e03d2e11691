#pragma once

#include "desktop/gnome/GnomeSession.h"
#include "desktop/wayland/WaylandStory.h"

#include <memory>
#include <utility>

namespace hollowfernpike::test {

/// A story that goes as it can on GNOME Shell alone.
class GnomeStory : public WaylandStory {
public:
    explicit GnomeStory(const GnomeSettings& settings = {})
        : GnomeStory(std::make_unique<GnomeSession>(settings)) {}

    GnomeDesktop& desktop;
    const GnomePager& gnome;

    /// Kills the shell and starts it anew; applications have ended by then.
    void restart() {
        desktop.restart();
        static_cast<GnomeSession&>(session()).keys.reconnect();
    }

private:
    explicit GnomeStory(std::unique_ptr<GnomeSession> place)
        : WaylandStory(std::move(place)), desktop(static_cast<GnomeSession&>(session()).desktop),
          gnome(static_cast<GnomeSession&>(session()).gnomePager) {}
};

} // namespace hollowfernpike::test
