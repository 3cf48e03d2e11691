#pragma once

#include "desktop/DesktopStory.h"
#include "desktop/Pager.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// What a story on an X server has around it.
class Stage {
public:
    Stage(const std::string& windowManager, ScreenSize size, Home home)
        : desktop(windowManager, size, std::move(home)) {}

    PrivateDesktop desktop;
    Pager pager{desktop.display()};
    KeyInjector keyboard{desktop.display()};
};

/// A story on an X server. The stage is a base because it outlives what happens on it.
class Story : public Stage, public DesktopStory {
public:
    explicit Story(const std::string& windowManager = "openbox", ScreenSize size = {},
                   Home home = std::make_shared<TemporaryDirectory>());

    using DesktopStory::launchUtility;
    ChildProcess& launchUtility(const Environment& changes) override;
    ChildProcess& launchUtility(const Environment& changes,
                                const std::vector<std::string>& arguments);

    /// Whether, after some waiting, the utility holds all combinations of the list for which the
    /// map has a key: other programs are refused them.
    testing::AssertionResult areLive() override;
    testing::AssertionResult isLive(const KeyGrab& grab);

    /// Whether, after some waiting, nobody holds the combination any more.
    testing::AssertionResult isFree(const Combination& combination);

    /// Keeps the server from repeating keys. If a client freezes the keyboard for longer than the
    /// repeat delay, the server repeats a key without end although it was let go. To be called when
    /// the window manager runs: mutter turns the repetition on.
    void turnRepetitionOff();

    /// Takes all key bindings from the window manager, which must be Openbox.
    void unbindWindowManager();

    /// The combination on this keyboard, as long as nobody has moved the modifiers.
    KeyGrab grabOf(const Combination& combination) const;

    /// Whether, after some waiting, this window is the active one and has the keys.
    testing::AssertionResult isActive(xcb_window_t window);

    /// Activates the first of these windows as a task bar does, again if need be, because what was
    /// opened before may still be asking for the front. Whether one of them has the keys then.
    bool bringForward(const std::function<std::vector<xcb_window_t>()>& windows);

    using DesktopStory::keycode;
    unsigned keycode(std::string_view keyName) const override { return keyboard.keycode(keyName); }

    /// A file of that name in the home which lets a client connect, trusted or "untrusted".
    std::filesystem::path authority(const std::string& name, const std::string& trust);

    /// Runs a program of the desktop to its end. Throws std::runtime_error if it fails.
    void run(const std::vector<std::string>& arguments);

protected:
    Keys& keys() override { return keyboard; }
    ApplicationPlace applicationPlace() const override {
        return placeIn(desktop, HFP_PROBE_WINDOW);
    }
    std::filesystem::path dataHome() const override { return desktop.dataHome(); }
    bool hasKeys(const Application& application) override { return hasKeys(application.windows()); }
    void activate(const Application& application) override {
        pager.activate(application.windows().at(0));
    }
    bool swallowsKeyUps() const override { return false; }
    std::string windowsTold() override;

private:
    bool hasKeys(const std::vector<xcb_window_t>& windows);

    XClient prober_{desktop.display()};
};

} // namespace hollowfernpike::test
