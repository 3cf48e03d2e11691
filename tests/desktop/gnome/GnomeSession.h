#pragma once

#include "desktop/gnome/GnomePager.h"
#include "desktop/wayland/WaylandSession.h"
#include "support/GnomeDesktop.h"
#include "support/GnomeKeyboard.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A private session on GNOME Shell.
class GnomeSession final : public WaylandSession {
public:
    explicit GnomeSession(const GnomeSettings& settings) : desktop(settings) {}

    GnomeDesktop desktop;
    GnomeKeyboard keys{desktop};
    GnomePager gnomePager{desktop};

    std::string name() const override { return "GNOME Shell"; }
    std::filesystem::path home() const override { return desktop.home(); }
    std::filesystem::path dataHome() const override { return desktop.dataHome(); }
    std::filesystem::path applications() const override { return desktop.applications(); }
    const Environment& environment() const override { return desktop.environment(); }
    std::filesystem::path lend(const std::filesystem::path& file) const override {
        return desktop.lend(file);
    }
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes) const override {
        return desktop.start(commandLine, changes);
    }
    ChildProcess& compositor() override { return desktop.shell(); }
    SessionBus& bus() override { return desktop.bus(); }
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
