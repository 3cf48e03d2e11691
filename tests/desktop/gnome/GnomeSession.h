#pragma once

#include "desktop/gnome/GnomePager.h"
#include "desktop/wayland/WaylandSession.h"
#include "support/GnomeDesktop.h"
#include "support/GnomeKeyboard.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::test {

/// A private session on GNOME Shell.
class GnomeSession final : public SessionOn<GnomeDesktop> {
public:
    explicit GnomeSession(const GnomeSettings& settings) : SessionOn(settings) {}

    GnomeKeyboard keys{desktop};
    GnomePager gnomePager{desktop};

    std::string name() const override { return "GNOME Shell"; }
    Keyboard& keyboard() override { return keys; }
    const WaylandPager& pager() const override { return gnomePager; }
    bool swallowsKeyUps() const override { return false; }
    bool bindsSymbols() const override { return false; }
    Combination rare(std::uint16_t keyCode) const override {
        return {keyCode, control | shift | command};
    }

    /// Which goes to the second workspace.
    Combination bindOwn() override { return {124, control | option}; }
    bool hasDoneOwn() const override {
        return gnomePager.workspace() == gnomePager.otherWorkspace();
    }
    void undoOwn() override { gnomePager.goToWorkspace("0"); }
};

} // namespace hollowfernpike::test
