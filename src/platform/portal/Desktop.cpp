#include "platform/portal/Desktop.h"

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/portal/PortalFiles.h"
#include "platform/portal/PortalTap.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"
#include "platform/wayland/recorder/EventTaps.h"
#include "platform/wayland/windows/ToplevelMirror.h"
#include "platform/wayland/windows/Windows.h"

#include <cstdlib>
#include <string>
#include <utility>

#include <QGuiApplication>
#include <QWindow>

namespace hollowfernpike::portal {

namespace {

constexpr const char* shortcutsInterface = "org.freedesktop.impl.portal.GlobalShortcuts";

/// Whether the portal with this name can bind keys here. That of GNOME serves in sessions on other
/// compositors, too, but GNOME's shell alone knows the keys. That of Hyprland leaves them to the
/// user's configuration.
bool bindsKeysHere(const std::string& portal, const std::string& compositor) {
    return !portal.empty() && portal != "hyprland" &&
           (portal != "gnome" || compositor == "gnome-shell");
}

class Desktop final : public platform::Desktop {
public:
    Desktop(platform::DesktopHost host, std::unique_ptr<wayland::Connection> connection)
        : host_(std::move(host)), connection_(std::move(connection)) {
        connection_->attach(host_.runLoop, host_.onLost);
    }

    std::optional<platform::Distrust> trustProblem() override {
        // Portals know a program by its desktop entry.
        if (freedesktop::hasDataFile("applications/" + identifier_ + ".desktop")) {
            return std::nullopt;
        }
        return platform::Distrust{
            {"デスクトップは、インストールされているプログラムにだけキーを割り当てます。" +
                 identifier_ + ".desktop がありません。パッケージをインストールしてください。",
             "The desktop binds keys for installed programs alone, and there is no " + identifier_ +
                 ".desktop. Install the package."}};
    }

    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return tokens_; }

private:
    platform::DesktopHost host_;
    std::string identifier_ = QGuiApplication::desktopFileName().toStdString();
    std::unique_ptr<wayland::Connection> connection_;
    wayland::SeatKeyboard keyboard_{*connection_};
    wayland::ActivationTokens tokens_{*connection_};
    wayland::ToplevelMirror mirror_{*connection_, identifier_};
    wayland::EventTaps eventTaps_{[this](platform::EventTapCallback callback, void* userInfo) {
        return std::make_unique<PortalTap>(
            PortalTap::Services{
                .host = host_, .bus = *host_.bus, .keyboard = keyboard_, .presses = tokens_},
            callback, userInfo);
    }};
    wayland::Windows windows_{host_, mirror_};
    wayland::OwnWindows ownWindows_{[this](const QWindow& window) {
        return mirror_.activateOwn(window.title().toStdString());
    }};
};

} // namespace

std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection) {
    const char* const session = std::getenv("XDG_CURRENT_DESKTOP");
    if (session == nullptr || freedesktop::SessionBus::addressOfSession().empty() ||
        !bindsKeysHere(portalFor(shortcutsInterface, session), connection->compositorName())) {
        return nullptr;
    }
    return std::make_unique<wayland::FoundDesktop<Desktop>>(std::move(connection));
}

} // namespace hollowfernpike::portal
