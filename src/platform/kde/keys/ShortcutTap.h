#pragma once

#include "platform/Desktop.h"
#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/kde/keys/GlobalShortcuts.h"
#include "platform/kde/keys/KeyValues.h"
#include "platform/kde/keys/Layouts.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/keyboard/HeldKey.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"

#include <map>
#include <optional>
#include <vector>

#include <QObject>

namespace hollowfernpike::kde {

/// An active tap by the desktop's global shortcuts, with an action for each combination. KWin
/// swallows a bound press; 5.27 lets its key-up through.
///
/// Actions are bound to what the keys write in the current layout, and bound anew when that
/// changes. The tap reports itself disabled when other combinations than before are refused.
///
/// If the user gives one of our actions another key in the settings of the desktop, the shortcut
/// gets that combination. A key that no shortcut can have is taken back. If the user takes the key
/// away there, the combination counts as refused until the user gives the action a key again, as
/// long as the tap runs and the combination is of interest. Refused combinations are asked for
/// again whenever something changes.
class ShortcutTap final : public QObject, public freedesktop::Tap {
public:
    /// All outlive the tap.
    struct Services {
        const platform::DesktopHost& host;
        freedesktop::SessionBus& bus;
        wayland::SeatKeyboard& keyboard;
        wayland::ActivationTokens& presses;
        KeyValues::Plasma plasma;
    };

    ShortcutTap(const Services& services, platform::EventTapCallback callback, void* userInfo);
    ShortcutTap(const ShortcutTap&) = delete;
    ShortcutTap& operator=(const ShortcutTap&) = delete;
    ~ShortcutTap() override;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> refusedCombinations() const override;

private:
    enum class Verdict : unsigned char {
        none, ///< KWin has not answered yet
        granted,
        refused,
        takenAway, ///< by the user
    };

    struct Action {
        platform::KeyCombination combination;
        QString label;
        QList<int> keys; ///< empty if the keyboard has no such key
        Verdict verdict = Verdict::none;
    };
    using Actions = std::map<QString, Action>;

    void start() override;
    void stop() override;
    void bind();
    void findLeftovers();
    Actions wantedActions() const;
    KeyValues keyValues() const;
    static bool isToChange(const Action& known, const Action& wanted);
    void forgetUnwanted(const Actions& wanted);
    void assign(const QString& name, const Action& wanted);
    void onAnswer(const QString& name, const QList<int>& keys,
                  const std::optional<QList<int>>& granted);
    void onAnswered();
    void onPressed(const QString& name);
    void onChangedByUser(const QString& name, const QList<int>& keys);
    void bindIfLive();
    void onSettled();

    Services services_;
    GlobalShortcuts shortcuts_;
    Layouts layouts_;
    Actions interest_;            ///< without keys, which depend on the layout
    Actions actions_;             ///< as KWin has them, by their names
    bool knowsLeftovers_ = false; ///< of an earlier run
    bool isAsking_ = false;       ///< for them
    int unanswered_ = 0;
    wayland::HeldKey held_;
};

} // namespace hollowfernpike::kde
