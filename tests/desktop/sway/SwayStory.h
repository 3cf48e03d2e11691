#pragma once

#include "desktop/Application.h"
#include "desktop/Combination.h"
#include "desktop/ShortcutList.h"
#include "desktop/Utility.h"
#include "desktop/sway/SwayPager.h"
#include "support/SwayDesktop.h"
#include "support/VirtualKeyboard.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A private session on sway in which the utility runs and applications come and go, driven by keys
/// alone.
class SwayStory {
public:
    /// `configuration` are lines for sway's configuration file.
    explicit SwayStory(const std::string& configuration = {}, const KeyboardLayout& layout = {});
    SwayStory(const SwayStory&) = delete;
    SwayStory& operator=(const SwayStory&) = delete;

    /// Fails the test if a sanitizer has complained of the utility.
    ~SwayStory() = default;

    SwayDesktop desktop;
    VirtualKeyboard keyboard;
    SwayPager pager{desktop.ipc()};

    /// Installs an application; it lives as long as the story.
    Application& install(const std::string& name, const ApplicationTraits& traits = {});

    /// Installs an application, starts it and waits until it is in front.
    Application& open(const std::string& name, const ApplicationTraits& traits = {});

    /// Adds a shortcut to the list that the utility will read.
    void bind(const Combination& combination, const Application& application);
    void bind(const Combination& combination, const ShortcutTarget& target);

    /// Takes all shortcuts off the list.
    void forgetShortcuts() { shortcuts_.clear(); }

    std::filesystem::path shortcutsFile() const;
    void writeShortcuts() const;

    /// Writes the list of shortcuts, starts the utility and waits until the combinations are live.
    void startUtility(const Environment& changes = {});

    /// Starts the utility alone, with the files as they are, in the place of the one before. It
    /// logs what it does about keys. Leaks are not looked for unless `changes` say so.
    ChildProcess& launchUtility(const Environment& changes = {});

    ChildProcess& utility() { return utility_.process(); }

    /// What the utility has written so far; empty if launchUtility() did not start it.
    std::string utilityTells() { return utility_.tells(); }

    /// How often the utility has told in its log that it has bound its combinations. Sway tells
    /// nobody what is bound.
    std::size_t bindings();

    /// Whether, after some waiting, it has done so more often than that.
    testing::AssertionResult bindsAgain(std::size_t before);

    /// Presses the combination and lets it go.
    void strike(const Combination& combination) { keyboard.strike(combination.keys()); }

    /// The same in two steps.
    void hold(const Combination& combination);
    void letGo(const Combination& combination);

    /// The number of the combination's key in an application's log.
    std::uint32_t keycode(const Combination& combination) const;

    /// Whether, after some waiting, the application's window has the focus and the keys.
    testing::AssertionResult isInFront(const Application& application);

    /// Strikes a key that nobody binds and waits until the application has seen it. What was struck
    /// before has then reached it, or never will.
    testing::AssertionResult getsKeys(const Application& application,
                                      std::chrono::milliseconds longest = patience);

    /// Brings it to the front as a panel does, then checks as getsKeys() does. Repeats both if need
    /// be, because what was opened before may come to the front only now.
    testing::AssertionResult switchTo(const Application& application);

    /// Whether no application has seen the key of the combination go down or up. To be asked once a
    /// later key has arrived.
    testing::AssertionResult nobodySaw(const Combination& combination);

    /// Whether the last of these keys, struck while `from` is in front, brings `target` forward and
    /// stays hidden from `from`, which is in front again afterwards.
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const std::vector<std::string>& keys);
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const Combination& combination);

    /// Whether the last of these keys reaches `front`, which is in front before and afterwards.
    testing::AssertionResult passes(const Application& front, const std::vector<std::string>& keys);

private:
    bool hasKeys(const Application& application) const;
    std::string diary();

    std::vector<std::unique_ptr<Application>> applications_;
    ShortcutList shortcuts_;
    Utility utility_;
};

} // namespace hollowfernpike::test
