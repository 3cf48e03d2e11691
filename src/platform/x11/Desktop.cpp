#include "platform/x11/Desktop.h"

#include "platform/x11/LaunchFeedback.h"
#include "platform/x11/OwnWindows.h"
#include "platform/x11/TrustProblem.h"
#include "platform/x11/keyboard/ToolkitModifiers.h"
#include "platform/x11/taps/EventTaps.h"
#include "platform/x11/tray/SystemTray.h"
#include "platform/x11/windows/Windows.h"

#include <utility>

#include <QGuiApplication>

namespace hollowfernpike::x11 {

namespace {

/// The toolkit's own, which lives as long as the application object.
xcb_connection_t* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

class Desktop final : public platform::Desktop {
public:
    explicit Desktop(platform::DesktopHost host) : host_(std::move(host)) {
        const auto* const toolkit = xcb_get_setup(toolkitConnection());
        const auto client = [mask = toolkit->resource_id_mask](std::uint32_t resource) {
            return resource & ~mask;
        };
        eventTaps_.setOwnWindows([client, ours = toolkit->resource_id_base](xcb_window_t window) {
            return client(window) == ours;
        });
    }

    std::optional<platform::Distrust> trustProblem() override {
        const auto problem = findTrustProblem(Connection::open().get());
        return problem ? std::optional(platform::Distrust{trustMessage(*problem)}) : std::nullopt;
    }

    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return launchFeedback_; }
    platform::SystemTray* systemTray() override { return &systemTray_; }

private:
    platform::DesktopHost host_;
    UserTime userTime_;
    EventTaps eventTaps_{host_.mainQueue, userTime_, {}, host_.onLost, host_.isScreenLocked};
    Windows windows_{host_, userTime_};
    LaunchFeedback launchFeedback_{windows_, userTime_};
    OwnWindows ownWindows_{toolkitConnection()};
    SystemTray systemTray_{toolkitConnection(), host_.runLoop};
    ToolkitModifiers toolkitModifiers_{toolkitConnection()};
};

class FoundDesktop final : public platform::FoundDesktop {
public:
    explicit FoundDesktop(std::unique_ptr<Connection> display) : display_(std::move(display)) {}

    const char* toolkitPlatform() const override { return "xcb"; }

    // An X server may reset itself when its last client leaves, so our connection stays open until
    // now, when the toolkit has one of its own.
    std::unique_ptr<platform::Desktop> open(const platform::DesktopHost& host) override {
        display_.reset();
        return std::make_unique<Desktop>(host);
    }

private:
    std::unique_ptr<Connection> display_;
};

} // namespace

std::unique_ptr<platform::FoundDesktop> findDesktop() {
    auto display = Connection::open();
    return display ? std::make_unique<FoundDesktop>(std::move(display)) : nullptr;
}

} // namespace hollowfernpike::x11
