#pragma once

#include "hotkeys/ShortcutMapKey.h"
#include "model/AppShortcut.h"
#include "platform/EventTap.h"
#include "platform/Services.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace hollowfernpike {

/// Shortcuts by the text of their `ShortcutMapKey`.
using ShortcutMap =
    std::unordered_map<std::string, AppShortcut, TransparentTextHash, std::equal_to<>>;

/// Who has a combination besides us.
enum class Holder {
    nobody,
    program, ///< another program, which gets its presses as well
    desktop, ///< the desktop itself, so that its presses never come here
};

/// Posted on the notification centre when other combinations than before may be refused.
inline constexpr std::string_view refusedCombinationsDidChange = "refusedCombinationsDidChange";

/// Watches the key presses of the whole desktop, swallows those that are bound and hands their
/// shortcuts to the launcher. Failures are neither logged nor shown. Main thread only.
class HotkeyManager : public std::enable_shared_from_this<HotkeyManager> {
public:
    /// Made on first use.
    static HotkeyManager& shared() { return *platform::SharedInstance<HotkeyManager>::get(); }

    /// Builds the map and installs the tap. While the process is not trusted it asks the user
    /// instead and tries again every 5 seconds, without end; each call made meanwhile starts a
    /// chain of retries of its own. Does nothing while a tap is installed.
    void start();

    /// Makes the map anew from the store's list; of shortcuts with the same combination the last
    /// one wins. To be called whenever the list has changed, with or without a tap.
    void buildShortcutMap();

    /// Ends the tap, if there is one, and empties the map.
    void stop();

    /// The map as it is now, never null. A later change makes a new map and leaves this one as it
    /// is, so a shortcut found in this one stays valid while the list changes.
    std::shared_ptr<const ShortcutMap> shortcutMap() const { return shortcutMap_; }

    /// The shortcut of the map with that combination; null if there is none.
    const AppShortcut* shortcutFor(const platform::KeyCombination& combination) const;

    /// Who else holds this combination, bound or not. It is asked for a moment if it is not bound.
    Holder otherHolder(const platform::KeyCombination& combination) const;

    /// Tries to get what other programs held when last tried, because nothing tells that they have
    /// let go of it. To be called when somebody looks at that.
    void tryAgain();

    /// The installed tap and what attaches it to the main loop; both null while there is none.
    platform::EventTap* eventTap() const { return eventTap_.get(); }
    platform::RunLoopSource* runLoopSource() const { return runLoopSource_.get(); }

private:
    friend class platform::SharedInstance<HotkeyManager>;
    explicit HotkeyManager(const platform::Services& services);

    void installEventTap();
    void tellInterest();
    std::vector<platform::KeyCombination> interest() const;

    platform::AccessibilityTrust& accessibilityTrust_;
    platform::EventTaps& eventTaps_;
    platform::MainQueue& mainQueue_;
    std::shared_ptr<const ShortcutMap> shortcutMap_ = std::make_shared<ShortcutMap>();
    std::unique_ptr<platform::EventTap> eventTap_;
    std::unique_ptr<platform::RunLoopSource> runLoopSource_;
};

/// The callback of the manager's tap, a `platform::EventTapCallback`. Launches what is bound to the
/// key press and returns null; passes everything else on by returning `event`. When the tap reports
/// itself disabled, enables it again right after returning. Ignores `proxy` and `userInfo`. Ends
/// the process on a key code outside 0 to 65535. Never throws.
const platform::KeyEvent* hotkeyEventTapCallback(platform::EventTap* proxy,
                                                 platform::EventType type,
                                                 const platform::KeyEvent* event,
                                                 void* userInfo) noexcept;

} // namespace hollowfernpike
