#pragma once

#include "desktop/Application.h"
#include "desktop/Combination.h"
#include "desktop/Pager.h"
#include "desktop/ShortcutList.h"
#include "desktop/Utility.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/WaitUntil.h"
#include "support/XClient.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A private desktop on which the utility runs and applications come and go, driven by keys alone.
class Story {
public:
    explicit Story(const std::string& windowManager = "openbox", ScreenSize size = {},
                   Home home = std::make_shared<TemporaryDirectory>());
    Story(const Story&) = delete;
    Story& operator=(const Story&) = delete;

    /// Fails the test if a sanitizer has complained of the utility.
    ~Story() = default;

    PrivateDesktop desktop;
    Pager pager{desktop.display()};
    KeyInjector keyboard{desktop.display()};

    /// Installs an application; it lives as long as the story.
    Application& install(const std::string& name, const ApplicationTraits& traits = {});

    /// Installs an application, starts it and waits until it is in front.
    Application& open(const std::string& name, const ApplicationTraits& traits = {});

    /// Adds a shortcut to the list that the utility will read.
    void bind(const Combination& combination, const Application& application);
    void bind(const Combination& combination, const ShortcutTarget& target);

    std::filesystem::path shortcutsFile() const;
    void writeShortcuts() const;

    /// Writes the list of shortcuts, starts the utility and waits until the combinations are live.
    void startUtility();

    /// Starts the utility alone, with the files as they are, in the place of the one before.
    ChildProcess& launchUtility(const Environment& changes = {});

    ChildProcess& utility() { return utility_.process(); }

    /// What the utility has written so far; empty if launchUtility() did not start it.
    std::string utilityTells() { return utility_.tells(); }

    /// Whether, after some waiting, the utility holds all combinations of the list for which the
    /// map has a key: other programs are refused them.
    testing::AssertionResult areLive();
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
    KeyGrab grabOf(const Combination& combination);

    /// Presses the combination and lets it go.
    void strike(const Combination& combination);

    /// The same in two steps; in between the keyboard repeats it.
    void hold(const Combination& combination);
    void letGo(const Combination& combination);

    /// Whether, after some waiting, the application's window is the active one and has the keys.
    testing::AssertionResult isInFront(const Application& application);

    /// Whether, after some waiting, this window is the active one and has the keys.
    testing::AssertionResult isActive(xcb_window_t window);

    /// Strikes a key that nobody binds and waits until the application has seen it. What was
    /// struck before has then reached it, or never will.
    testing::AssertionResult getsKeys(const Application& application,
                                      std::chrono::milliseconds longest = patience);

    /// Brings it to the front as a task bar does, then checks as `getsKeys` does. Repeats both if
    /// need be, because what was opened before may still be asking for the front.
    testing::AssertionResult switchTo(const Application& application);

    /// Activates the first of these windows as a task bar does, again if need be, because what was
    /// opened before may still be asking for the front. Whether one of them has the keys then.
    bool bringForward(const std::function<std::vector<xcb_window_t>()>& windows);

    /// Whether no application has seen the key go down. To be asked once a later key has arrived.
    testing::AssertionResult nobodySaw(const Combination& combination);

    /// Whether the last of these keys, struck while `from` is in front, brings `target` forward and
    /// stays hidden from `from`, which is in front again afterwards.
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const std::vector<std::string>& keys);
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const Combination& combination);

    /// Whether the last of these keys reaches `front`, which is in front before and afterwards.
    testing::AssertionResult passes(const Application& front, const std::vector<std::string>& keys);

    /// A file of that name in the home which lets a client connect, trusted or "untrusted".
    std::filesystem::path authority(const std::string& name, const std::string& trust);

    /// Runs a program of the desktop to its end. Throws std::runtime_error if it fails.
    void run(const std::vector<std::string>& arguments);

private:
    bool hasKeys(const std::vector<xcb_window_t>& windows);
    std::string diary();

    XClient prober_{desktop.display()};
    std::vector<std::unique_ptr<Application>> applications_;
    ShortcutList shortcuts_;
    Utility utility_;
};

} // namespace hollowfernpike::test
