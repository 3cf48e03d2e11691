#pragma once

#include "desktop/wayland/WaylandSession.h"
#include "support/KWinDesktop.h"
#include "support/KWinKeyboard.h"
#include "support/KWinPager.h"

#include <cstdint>
#include <filesystem>
#include <memory>
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
class KWinSession final : public WaylandSession {
public:
    explicit KWinSession(const KWinSettings& settings) : desktop(settings) {}

    KWinDesktop desktop;
    KWinKeyboard keys{desktop};
    KWinPager kwinPager{desktop};

    std::string name() const override { return "KWin"; }
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
    ChildProcess& compositor() override { return desktop.kwin(); }
    SessionBus& bus() override { return desktop.bus(); }
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
