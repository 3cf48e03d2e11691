#pragma once

#include "platform/MainQueue.h"
#include "platform/x11/grabs/FocusableWindows.h"
#include "platform/x11/grabs/KeyGrabs.h"
#include "platform/x11/grabs/LoneSuperKey.h"
#include "platform/x11/taps/KeySource.h"
#include "platform/x11/taps/RawKeys.h"
#include "platform/x11/tray/ManagerSelection.h"

#include <deque>
#include <memory>

namespace hollowfernpike::x11 {

/// The presses of the combinations of interest, taken from everybody else: the source of an active
/// tap. Combinations that another client holds are only observed, and tried again with every
/// change and after each of their presses.
///
/// Presses with the Super key can pass by grabs on the root while somebody holds that key alone
/// (LoneSuperKey). Then they are grabbed on the windows, too, and observed besides if that does not
/// catch them all. Whether somebody holds it is asked with every change, and a few times in the
/// next 20 seconds where the answer may soon be another: after the first combination with Super
/// came in, after a window manager began, and after the key looked free although somebody held it
/// before.
class GrabbedKeys final : public KeySource {
public:
    /// The connection and the queue outlive this object.
    GrabbedKeys(const Connection& connection, platform::MainQueue& queue);
    GrabbedKeys(const GrabbedKeys&) = delete;
    GrabbedKeys& operator=(const GrabbedKeys&) = delete;
    ~GrabbedKeys() override = default;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    void start(const KeyboardMap& map) override;
    void stop() override;
    std::optional<KeyPress> read(const xcb_generic_event_t& event) override;

private:
    /// A press that was reported when it was observed. Should a grab bring it, too, it has the same
    /// key, modifiers and time.
    struct Observed {
        RawKeys::Press press;
        bool isReplayed; ///< and may have a later sequence number
    };

    void update();
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
    std::shared_ptr<GrabbedKeys*> doubt_; ///< since the key looked free although somebody held it
    std::optional<FocusableWindows> windows_; ///< present while somebody holds the lone Super key
    std::deque<Observed> observed_;
};

} // namespace hollowfernpike::x11
