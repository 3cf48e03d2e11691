#pragma once

#include "desktop/sway/SwayPager.h"
#include "desktop/wayland/WaylandSession.h"
#include "support/SwayDesktop.h"
#include "support/VirtualKeyboard.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A private session on sway.
class SwaySession final : public WaylandSession {
public:
    /// `configuration` are lines for sway's configuration file.
    SwaySession(const std::string& configuration, const KeyboardLayout& layout)
        : desktop(configuration), keys_(desktop.waylandSocket(), layout) {}

    SwayDesktop desktop;
    SwayPager swayPager{desktop.ipc()};

    std::string name() const override { return "sway"; }
    std::filesystem::path home() const override { return desktop.home(); }
    std::filesystem::path dataHome() const override { return desktop.dataHome(); }
    std::filesystem::path applications() const override { return desktop.applications(); }
    const Environment& environment() const override { return desktop.environment(); }
    std::filesystem::path lend(const std::filesystem::path& file) const override { return file; }
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes) const override {
        return desktop.start(commandLine, changes);
    }
    ChildProcess& compositor() override { return desktop.sway(); }
    SessionBus& bus() override { return desktop.bus(); }
    Keyboard& keyboard() override { return keys_; }
    const WaylandPager& pager() const override { return swayPager; }
    bool swallowsKeyUps() const override { return true; }
    bool bindsSymbols() const override { return false; }
    Combination rare(std::uint16_t keyCode) const override {
        return {keyCode, control | shift | command};
    }
    Combination bindOwn() override;
    bool hasDoneOwn() const override { return std::filesystem::exists(sign()); }
    void undoOwn() override { std::filesystem::remove(sign()); }

private:
    std::filesystem::path sign() const { return desktop.commonGround() / "told"; }

    VirtualKeyboard keys_;
};

} // namespace hollowfernpike::test
