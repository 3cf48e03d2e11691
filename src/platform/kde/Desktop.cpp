#include "platform/kde/Desktop.h"

#include "platform/kde/Permission.h"
#include "platform/kde/TaskBar.h"
#include "platform/kde/keys/ShortcutTap.h"
#include "platform/kde/windows/WindowMirror.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/ToolkitLoss.h"
#include "platform/wayland/ToolkitWindow.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"
#include "platform/wayland/recorder/EventTaps.h"
#include "platform/wayland/windows/Windows.h"

#include <QCoreApplication>

#include <utility>

#include <plasma-virtual-desktop-client-protocol.h>
#include <plasma-window-management-client-protocol.h>

namespace hollowfernpike::kde {

namespace {

/// The first to be offered by Plasma 6. KWin tells its clients no version of its own.
constexpr std::uint32_t windowsVersionOfPlasma6 = 17;

bool grantsWindows(const wayland::Connection& connection) {
    return connection.offeredVersion(org_kde_plasma_window_management_interface) > 0;
}

KeyValues::Plasma plasmaOf(const wayland::Connection& connection) {
    const auto version = connection.offeredVersion(org_kde_plasma_window_management_interface);
    return version < windowsVersionOfPlasma6 ? KeyValues::Plasma::five : KeyValues::Plasma::six;
}

/// KWin lets programs that may see the windows have activation tokens at any time.
class OwnWindows final : public wayland::OwnWindows {
public:
    explicit OwnWindows(wayland::ActivationTokens& tokens)
        : wayland::OwnWindows(wayland::requestWith([&tokens](const QWindow& /*window*/) {
              return tokens.request("app.hollowfernpike.Hollowfernpike");
          })) {}

    void setShownInTaskBar(std::uintptr_t native, bool shown) override {
        if (auto* const window = wayland::windowWith(native)) {
            taskBar_.setShown(*window, shown);
        }
    }

private:
    TaskBar taskBar_;
};

class Desktop final : public platform::Desktop {
public:
    Desktop(platform::DesktopHost host, std::unique_ptr<wayland::Connection> connection)
        : host_(std::move(host)), connection_(std::move(connection)) {
        connection_->attach(host_.runLoop, host_.restart);
    }

    // What a connection may see is decided when it is made, so with the permission we start anew.
    std::optional<platform::Distrust> trustProblem() override {
        if (host_.bus == nullptr) {
            return platform::Distrust{
                {"セッションバスがないため、ショートカットキーを検出できません。"
                 "Plasma のセッションの中で起動してください。",
                 "Shortcuts cannot be seen: there is no session bus. "
                 "Start the program inside a session of Plasma."}};
        }
        if (mirror_.isGranted()) {
            return std::nullopt;
        }
        const auto fresh = wayland::Connection::open();
        if (fresh && grantsWindows(*fresh)) {
            host_.restart();
        }
        return missingPermission(QCoreApplication::applicationFilePath().toStdString());
    }

    bool mayBecomeTrusted() override { return host_.bus != nullptr; }
    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return tokens_; }

private:
    platform::DesktopHost host_;
    wayland::ToolkitLoss toolkitLoss_{host_.restart};
    std::unique_ptr<wayland::Connection> connection_;
    wayland::SeatKeyboard keyboard_{*connection_};
    wayland::ActivationTokens tokens_{*connection_, [this] { return mirror_.activations(); }};
    WindowMirror mirror_{*connection_};
    wayland::EventTaps eventTaps_{[this](platform::EventTapCallback callback,
                                         void* userInfo) -> std::unique_ptr<platform::EventTap> {
        if (host_.bus == nullptr) {
            return nullptr;
        }
        return std::make_unique<ShortcutTap>(
            ShortcutTap::Services{.host = host_,
                                  .bus = *host_.bus,
                                  .keyboard = keyboard_,
                                  .presses = tokens_,
                                  .plasma = plasmaOf(*connection_)},
            callback, userInfo);
    }};
    wayland::Windows windows_{host_, mirror_};
    OwnWindows ownWindows_{tokens_};
};

} // namespace

std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection) {
    if (connection->offeredVersion(org_kde_plasma_virtual_desktop_management_interface) == 0) {
        return nullptr;
    }
    return std::make_unique<wayland::FoundDesktop<Desktop>>(std::move(connection));
}

} // namespace hollowfernpike::kde
