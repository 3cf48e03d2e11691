#pragma once

#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/wayland/recorder/ShortcutsInhibitor.h"

#include <optional>

#include <QObject>

class QKeyEvent;
class QWindow;

namespace hollowfernpike::wayland {

/// A listen-only tap on the window of ours that has the focus, since Wayland shows keys to nobody
/// else. While it is live it gets the compositor's own combinations, too, as far as the compositor
/// allows, and none of the keys presses a button or a menu of ours by its own combination. Reports
/// neither modifier keys nor repeats. Main thread only.
class FocusedKeysTap final : public QObject, public freedesktop::Tap {
public:
    FocusedKeysTap(platform::EventTapCallback callback, void* userInfo);
    FocusedKeysTap(const FocusedKeysTap&) = delete;
    FocusedKeysTap& operator=(const FocusedKeysTap&) = delete;
    ~FocusedKeysTap() override;

    void setInterest(std::span<const platform::KeyCombination>) override {}
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override { return {}; }
    std::vector<platform::KeyCombination> refusedCombinations() const override { return {}; }

private:
    void start() override;
    void stop() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void deliver(const QKeyEvent& press);

    Listener listener_;
    std::optional<ShortcutsInhibitor> inhibitor_;
};

} // namespace hollowfernpike::wayland
