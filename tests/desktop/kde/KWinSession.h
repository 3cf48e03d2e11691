#pragma once

#include "desktop/wayland/WaylandSession.h"
#include "support/KWinDesktop.h"
#include "support/KWinKeyboard.h"
#include "support/KWinPager.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// The windows and virtual desktops of KWin, as stories on every desktop ask for them.
class WaylandPagerOnKWin final : public WaylandPager {
public:
    explicit WaylandPagerOnKWin(KWinPager& kwin) : kwin_(kwin) {}

    std::vector<PagerWindow> windows() const override;

    void focus(pid_t process) const override { kwin_.activate(process); }
    void makeFullscreen(pid_t process) const override { kwin_.makeFullscreen(process); }
    void close(pid_t process) const override { kwin_.close(process); }
    void focusTitled(const std::string& title) const override { kwin_.activate(title); }
    void closeTitled(const std::string& title) const override { kwin_.close(title); }
    std::string workspace() const override { return kwin_.desktops().current(); }
    std::string otherWorkspace() const override { return "desktop-2"; }
    void moveToWorkspace(pid_t process, const std::string& name) const override {
        kwin_.moveToDesktop(process, name);
    }
    void goToWorkspace(const std::string& name) const override { kwin_.desktops().goTo(name); }

private:
    KWinPager& kwin_;
};

/// A private session on KWin.
class KWinSession final : public SessionOn<KWinDesktop> {
public:
    explicit KWinSession(const KWinSettings& settings) : SessionOn(settings) {}

    KWinKeyboard keys{desktop};
    KWinPager kwinPager{desktop};

    std::string name() const override { return "KWin"; }
    Keyboard& keyboard() override { return keys; }
    const WaylandPager& pager() const override { return pager_; }
    bool swallowsKeyUps() const override;
    bool bindsSymbols() const override { return true; }
    Combination rare(std::uint16_t keyCode) const override;

    /// Which goes to the second virtual desktop.
    Combination bindOwn() override { return {120, control}; }
    bool hasDoneOwn() const override { return pager_.workspace() == pager_.otherWorkspace(); }
    void undoOwn() override { pager_.goToWorkspace("desktop-1"); }

    /// Kills KWin and starts it anew.
    void restart();

private:
    WaylandPagerOnKWin pager_{kwinPager};
    mutable std::optional<bool> swallowsKeyUps_; ///< once it was asked for
};

} // namespace hollowfernpike::test
