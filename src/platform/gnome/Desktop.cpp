#include "platform/gnome/Desktop.h"

#include "platform/gnome/AcceleratorTap.h"
#include "platform/gnome/Permission.h"
#include "platform/gnome/ShellExtension.h"
#include "platform/gnome/ShellLaunches.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/ToolkitLoss.h"
#include "platform/wayland/recorder/EventTaps.h"
#include "platform/wayland/windows/Windows.h"

#include <QWindow>

#include <utility>

namespace hollowfernpike::gnome {

namespace {

class Desktop final : public platform::Desktop {
public:
    Desktop(platform::DesktopHost host, std::unique_ptr<wayland::Connection> connection)
        : host_(std::move(host)), connection_(std::move(connection)) {
        connection_->attach(host_.runLoop, host_.restart);
        QObject::connect(&extension_, &ShellExtension::appeared, &extension_, host_.onTrusted);
    }

    std::optional<platform::Distrust> trustProblem() override {
        if (extension_.isThere()) {
            return std::nullopt;
        }
        auto missing = missingExtension(*host_.bus);
        mayBecomeTrusted_ = missing.mayComeInThisSession;
        return std::move(missing.problem);
    }

    bool mayBecomeTrusted() override { return mayBecomeTrusted_; }
    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return launches_; }

private:
    bool mayBecomeTrusted_ = true;
    platform::DesktopHost host_;
    wayland::ToolkitLoss toolkitLoss_{host_.restart};
    std::unique_ptr<wayland::Connection> connection_;
    ShellExtension extension_{*host_.bus, host_.mainQueue};
    ShellLaunches launches_{extension_};
    wayland::EventTaps eventTaps_{[this](platform::EventTapCallback callback, void* userInfo) {
        return std::make_unique<AcceleratorTap>(extension_, launches_, callback, userInfo);
    }};
    wayland::Windows windows_{host_, extension_};
    wayland::OwnWindows ownWindows_{wayland::requestWith(
        [this](const QWindow& window) { return extension_.allowOwnWindow(window.title()); })};
};

} // namespace

// The shell's library for compositors is the base of other shells, too.
std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection) {
    if (connection->compositorName() != "gnome-shell" ||
        freedesktop::SessionBus::addressOfSession().empty() || !isExtensionInstalled()) {
        return nullptr;
    }
    return std::make_unique<wayland::FoundDesktop<Desktop>>(std::move(connection));
}

} // namespace hollowfernpike::gnome
