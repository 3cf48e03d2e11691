#pragma once

#include "platform/Desktop.h"
#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/portal/ShortcutsPortal.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/keyboard/HeldKey.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"

#include <map>
#include <optional>
#include <vector>

#include <QObject>

namespace hollowfernpike::portal {

/// An active tap by the desktop's portal for global shortcuts. The user decides there, in a dialog
/// of the desktop, and may choose other keys than ours.
///
/// Combinations are asked for by what their keys write in the first layout. Those that the portal
/// has not granted when it answers count as refused. The tap reports itself disabled when others
/// than before are refused. It asks for the same list once, and again when the portal has failed,
/// ended or taken its session back.
class PortalTap final : public QObject, public freedesktop::Tap {
public:
    /// All outlive the tap.
    struct Services {
        const platform::DesktopHost& host;
        const freedesktop::SessionBus& bus;
        wayland::SeatKeyboard& keyboard;
        wayland::ActivationTokens& presses;
    };

    PortalTap(const Services& services, platform::EventTapCallback callback, void* userInfo);
    PortalTap(const PortalTap&) = delete;
    PortalTap& operator=(const PortalTap&) = delete;
    ~PortalTap() override;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> refusedCombinations() const override;

private:
    void start() override;
    void stop() override;
    void bind();
    void onBound(const QStringList& names);
    void onPressed(const QString& name, const QString& token);

    Services services_;
    ShortcutsPortal portal_;
    std::map<QString, platform::KeyCombination> interest_; ///< by their names in the portal
    std::map<QString, QString> asked_;                     ///< triggers by names
    std::optional<QStringList> granted_;                   ///< absent before the portal has told
    wayland::HeldKey held_;
};

} // namespace hollowfernpike::portal
