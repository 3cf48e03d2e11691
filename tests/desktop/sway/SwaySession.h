#pragma once

#include "desktop/sway/SwayPager.h"
#include "desktop/wayland/WaylandSession.h"
#include "support/SwayDesktop.h"
#include "support/VirtualKeyboard.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace hollowfernpike::test {

/// A private session on sway.
class SwaySession final : public SessionOn<SwayDesktop> {
public:
    /// `configuration` are lines for sway's configuration file.
    SwaySession(const std::string& configuration, const KeyboardLayout& layout)
        : SessionOn(configuration), keys_(desktop.waylandSocket(), layout) {}

    SwayPager swayPager{desktop.ipc()};

    std::string name() const override { return "sway"; }
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
