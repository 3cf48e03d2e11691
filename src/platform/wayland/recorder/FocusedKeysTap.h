#pragma once

#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/wayland/recorder/ShortcutsInhibitor.h"

#include <optional>

#include <QObject>
#include <QWindow>

class QKeyEvent;

namespace hollowfernpike::wayland {

/// A listen-only tap on those of our windows that have the focus, since Wayland shows keys to
/// nobody else. The first of them that has the focus while the tap is live gets the compositor's
/// own combinations, too, as far as the compositor allows, until the tap stops or the window
/// closes, and the tap reports when it loses the focus. Reports neither modifier keys nor repeats.
/// Main thread only.
class FocusedKeysTap final : public QObject, public freedesktop::Tap {
public:
    FocusedKeysTap(platform::EventTapCallback callback, void* userInfo);
    FocusedKeysTap(const FocusedKeysTap&) = delete;
    FocusedKeysTap& operator=(const FocusedKeysTap&) = delete;
    ~FocusedKeysTap() override;

    void setInterest(std::span<const platform::KeyCombination>) override {}

private:
    void start() override;
    void stop() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void listenTo(QWindow* window);
    void handle(const QKeyEvent& press);
    void take(const QKeyEvent& press);

    const QWindow* listenedTo_ = nullptr; ///< had the focus first; may be gone by now
    std::optional<ShortcutsInhibitor> inhibitor_;
    QMetaObject::Connection hiding_; ///< of that window
    quint64 lastTime_ = 0;           ///< of the press that was seen last
    quint32 lastScanCode_ = 0;
};

} // namespace hollowfernpike::wayland
