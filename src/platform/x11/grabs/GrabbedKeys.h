#pragma once

#include "platform/MainQueue.h"
#include "platform/x11/grabs/FocusableWindows.h"
#include "platform/x11/grabs/KeyGrabs.h"
#include "platform/x11/grabs/LoneSuperKey.h"
#include "platform/x11/taps/KeySource.h"
#include "platform/x11/taps/RawKeys.h"
#include "platform/x11/tray/ManagerSelection.h"

#include <deque>
#include <functional>
#include <memory>

namespace hollowfernpike::x11 {

/// The source of an active tap: grabs the combinations of interest, so that nobody else gets their
/// presses. A combination that another client holds is only observed; we try to grab it again with
/// every change and after each of its presses.
///
/// While another client holds the Super key alone (LoneSuperKey), presses with Super can pass by
/// grabs on the root. They are then grabbed on the windows, too, and also observed if that does not
/// catch them all. Whether the key is held is asked with every change. It is asked again after 1, 5
/// and 20 seconds when the answer may change soon: after the first combination with Super came in,
/// after a window manager began, and after a key that was held looked free.
class GrabbedKeys final : public KeySource {
public:
    /// The connection and the queue outlive this object. `isScreenLocked`: as in RawKeys.
    GrabbedKeys(const Connection& connection, platform::MainQueue& queue,
                std::function<bool()> isScreenLocked);

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    void start(const KeyboardMap& map) override;
    void stop() override;
    std::optional<KeyPress> read(const xcb_generic_event_t& event) override;

private:
    /// A press that was reported when it was observed. If a grab delivers it as well, that event
    /// has the same key, modifiers and time.
    struct Observed {
        RawKeys::Press press;
        bool isReplayed; ///< if so, the grab's event may have a later sequence number
    };

    void update();
    void updateAndTell();
    void selectRootEvents();
    void followLoneSuperKey();
    LoneSuperKey askForLoneSuperKey();
    void beginDoubt();
    void askAgainLater();
    bool passesByGrabs(const platform::KeyCombination& combination) const;
    std::optional<KeyPress> readSwallowed(const xcb_generic_event_t& event);
    std::optional<KeyPress> readObserved(const RawKeys::Press& press);
    bool wasObserved(const RawKeys::Press& press);

    const Connection& connection_;
    platform::MainQueue& queue_;
    std::shared_ptr<GrabbedKeys*> self_ = std::make_shared<GrabbedKeys*>(this);
    ManagerSelection windowManager_;
    KeyGrabs grabs_;
    RawKeys rawKeys_;
    std::vector<platform::KeyCombination> interest_;
    std::vector<platform::KeyCombination> shared_;
    std::optional<KeyboardMap> map_; ///< present while started
    bool isSuperOfInterest_ = false;
    LoneSuperKey loneSuperKey_ = LoneSuperKey::free;
    std::shared_ptr<GrabbedKeys*> doubt_;     ///< set while a key that was held looks free
    std::optional<FocusableWindows> windows_; ///< present while `loneSuperKey_` is not free
    std::deque<Observed> observed_;
};

} // namespace hollowfernpike::x11
