#pragma once

#include "desktop/Application.h"
#include "desktop/Combination.h"
#include "desktop/ShortcutList.h"
#include "desktop/Utility.h"
#include "support/Keys.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A private desktop on which the utility runs and applications come and go, driven by keys alone.
class DesktopStory {
public:
    DesktopStory() = default;
    DesktopStory(const DesktopStory&) = delete;
    DesktopStory& operator=(const DesktopStory&) = delete;

    /// Fails the test if a sanitizer has complained of the utility.
    virtual ~DesktopStory() = default;

    /// Installs an application; it lives as long as the story.
    Application& install(const std::string& name, const ApplicationTraits& traits = {});

    /// Installs an application, starts it and waits until it is in front.
    Application& open(const std::string& name, const ApplicationTraits& traits = {});

    /// Kills and forgets all applications. Their windows may stay for a moment.
    void endApplications() { applications_.clear(); }

    /// Adds a shortcut to the list that the utility will read.
    void bind(const Combination& combination, const Application& application);
    void bind(const Combination& combination, const ShortcutTarget& target);

    /// Takes all shortcuts off the list.
    void forgetShortcuts() { shortcuts_.clear(); }

    std::filesystem::path shortcutsFile() const { return ShortcutList::fileIn(dataHome()); }
    void writeShortcuts() const { shortcuts_.write(shortcutsFile()); }

    /// Writes the list of shortcuts, starts the utility and waits until the combinations are live.
    void startUtility(const Environment& changes = {});

    /// Starts the utility alone, with the files as they are, in the place of the one before.
    virtual ChildProcess& launchUtility(const Environment& changes) = 0;
    ChildProcess& launchUtility() { return launchUtility({}); }

    ChildProcess& utility() { return utility_.process(); }

    /// What the utility has written so far; empty if launchUtility() did not start it.
    std::string utilityTells() { return utility_.tells(); }

    /// Presses the combination and lets it go.
    void strike(const Combination& combination) { keys().strike(combination.keys()); }

    /// The same in two steps; in between, keyboards may repeat it.
    void hold(const Combination& combination) { keys().hold(combination.keys()); }
    void letGo(const Combination& combination) { keys().letGo(combination.keys()); }

    /// Whether, after some waiting, the application's window is the active one and has the keys.
    testing::AssertionResult isInFront(const Application& application);

    /// Strikes a key that nobody binds and waits until the application has seen it. What was struck
    /// before has then reached it, or never will.
    testing::AssertionResult getsKeys(const Application& application,
                                      std::chrono::milliseconds longest = patience);

    /// Brings it to the front as a task bar does, then checks as getsKeys() does. Repeats both if
    /// need be, because what was opened before may still be asking for the front.
    testing::AssertionResult switchTo(const Application& application);

    /// Whether no application has seen the key of the combination go down, nor up where desktops
    /// swallow that. To be asked once a later key has arrived.
    testing::AssertionResult nobodySaw(const Combination& combination);

    /// Whether the last of these keys, struck while `from` is in front, brings `target` forward and
    /// stays hidden from `from`, which is in front again afterwards.
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const std::vector<std::string>& keyNames);
    testing::AssertionResult brings(const Application& target, const Application& from,
                                    const Combination& combination);

    /// Whether the last of these keys reaches `front`, which is in front before and afterwards.
    testing::AssertionResult passes(const Application& front,
                                    const std::vector<std::string>& keyNames);

    /// The number of a key in an application's log; 0 if the keyboard has no such key.
    virtual unsigned keycode(std::string_view keyName) const = 0;
    unsigned keycode(const Combination& combination) const {
        return keycode(combination.keyName());
    }

protected:
    virtual Keys& keys() = 0;
    virtual ApplicationPlace applicationPlace() const = 0;
    virtual std::filesystem::path dataHome() const = 0;

    /// Whether, after some waiting, all combinations are live that can be.
    virtual testing::AssertionResult areLive() = 0;

    /// Closes what the utility shows at its start on this desktop, once it is there.
    virtual void closeWelcome() {}

    virtual bool hasKeys(const Application& application) = 0;

    /// Asks for the front as a task bar does, once.
    virtual void activate(const Application& application) = 0;

    /// Whether windows see nothing of a bound key when it is let go, either.
    virtual bool swallowsKeyUps() const = 0;

    /// What the desktop has to say of its windows, to be read by people.
    virtual std::string windowsTold() = 0;

    std::string diary();

    Utility utility_;
    ShortcutList shortcuts_;

private:
    std::size_t timesSeen(unsigned key, const Application& application) const;

    std::vector<std::unique_ptr<Application>> applications_;
};

} // namespace hollowfernpike::test
