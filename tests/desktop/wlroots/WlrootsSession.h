#pragma once

#include "desktop/wayland/WaylandSession.h"
#include "desktop/wayland/WaylandStory.h"
#include "desktop/wlroots/ToplevelPager.h"
#include "support/VirtualKeyboard.h"
#include "support/WlrootsDesktop.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A private session on a compositor that tells programs of no keys. Its configuration has the
/// combinations `bound`, `another` and `third` run the utility's program.
class WlrootsSession final : public SessionOn<WlrootsDesktop> {
public:
    WlrootsSession(WlrootsCompositor kind, const KeyboardLayout& layout);

    VirtualKeyboard keys;
    ToplevelPager toplevels{desktop.waylandSocket(), desktop.home()};

    std::string name() const override;
    Keyboard& keyboard() override { return keys; }
    const WaylandPager& pager() const override { return toplevels; }
    void closeWelcome() override;
    bool swallowsKeyUps() const override { return true; }
    bool bindsSymbols() const override { return desktop.kind() == WlrootsCompositor::labwc; }
    Combination rare(std::uint16_t keyCode) const override {
        return {keyCode, control | shift | command};
    }

    // It carries out nothing itself: these throw std::logic_error.
    Combination bindOwn() override;
    bool hasDoneOwn() const override;
    void undoOwn() override;
};

/// A story there.
class WlrootsStory : public WaylandStory {
public:
    explicit WlrootsStory(WlrootsCompositor kind, const KeyboardLayout& layout = {})
        : WaylandStory(std::make_unique<WlrootsSession>(kind, layout)) {}

    WlrootsSession& place() const { return static_cast<WlrootsSession&>(session()); }
};

} // namespace hollowfernpike::test
