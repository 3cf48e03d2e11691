#pragma once

#include "desktop/Application.h"
#include "desktop/Combination.h"
#include "desktop/ShortcutList.h"
#include "desktop/Utility.h"
#include "desktop/wayland/WaylandSession.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A private session on a Wayland desktop in which the utility runs and applications come and go,
/// driven by keys alone.
class WaylandStory {
public:
    explicit WaylandStory(std::unique_ptr<WaylandSession> place);
    WaylandStory(const WaylandStory&) = delete;
    WaylandStory& operator=(const WaylandStory&) = delete;

    /// Fails the test if a sanitizer has complained of the utility.
    virtual ~WaylandStory() = default;

    WaylandSession& session() const { return *session_; }
    Keyboard& keyboard;
    const WaylandPager& pager;

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

    /// The utility's program, as it is run here.
    std::string program() const { return session_->lend(HFP_PROGRAM); }

    /// What startUtility() needs to look for leaks, too.
    Environment leaksReported() const;

    /// Takes other layouts into use, or switches to one of several; returns when the utility, if it
    /// runs, has bound its combinations under it.
    void use(const KeyboardLayout& layout);
    void lockGroup(std::uint32_t group);

    /// How often the utility has told in its log that it has bound its combinations. No desktop
    /// tells others what is bound.
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

    /// Whether no application has seen the key of the combination go down, nor up where desktops
    /// swallow that. To be asked once a later key has arrived.
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
    std::size_t timesSeen(std::uint32_t key, const Application& application) const;
    void settleLayouts(const std::function<void()>& change);
    std::string diary();

    std::unique_ptr<WaylandSession> session_;
    std::vector<std::unique_ptr<Application>> applications_;
    ShortcutList shortcuts_;
    Utility utility_;
};

/// The story on the desktop that a test program is for.
std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout = {});

} // namespace hollowfernpike::test
