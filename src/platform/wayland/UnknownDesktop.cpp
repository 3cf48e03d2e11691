#include "platform/wayland/UnknownDesktop.h"

#include "platform/EventTap.h"
#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/configuration/BindingLines.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"
#include "platform/wayland/recorder/EventTaps.h"
#include "platform/wayland/windows/ToplevelMirror.h"
#include "platform/wayland/windows/Windows.h"

#include <cstddef>
#include <cstdlib>
#include <span>
#include <utility>

#include <QGuiApplication>
#include <QWindow>

namespace hollowfernpike::wayland {

namespace {

/// The names that the session gives itself, separated by colons.
std::string sessionNames() {
    const char* const names = std::getenv("XDG_CURRENT_DESKTOP");
    return names == nullptr ? std::string{} : names;
}

/// An active tap where the compositor's own configuration binds the combinations, to commands of
/// ours: the presses come with these, never by the tap.
class CommandedTap final : public freedesktop::Tap {
public:
    CommandedTap() : Tap(nullptr, nullptr) {}
    CommandedTap(const CommandedTap&) = delete;
    CommandedTap& operator=(const CommandedTap&) = delete;
    ~CommandedTap() override { invalidate(); }

    void setInterest(std::span<const platform::KeyCombination> combinations) override {
        count_ = combinations.size();
        if (isLive()) {
            start();
        }
    }

private:
    void start() override {
        qCDebug(freedesktop::keysLog, "to be pressed by commands: bound %zu combinations", count_);
    }
    void stop() override {}

    std::size_t count_ = 0; ///< of combinations of interest
};

class UnknownDesktop final : public platform::Desktop {
public:
    UnknownDesktop(platform::DesktopHost host, std::unique_ptr<Connection> connection)
        : host_(std::move(host)), connection_(std::move(connection)) {
        connection_->attach(host_.runLoop, host_.onLost);
    }

    std::optional<platform::Distrust> trustProblem() override { return std::nullopt; }
    platform::EventTaps& eventTaps() override { return taps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return tokens_; }

    std::optional<platform::ManualBindings>
    manualBindings(std::span<const platform::BoundCommand> commands) override {
        return bindingLines(connection_->compositorName(), sessionNames(), keyboard_.keymap(),
                            commands);
    }

private:
    platform::DesktopHost host_;
    std::unique_ptr<Connection> connection_;
    SeatKeyboard keyboard_{*connection_};
    ActivationTokens tokens_{*connection_};
    ToplevelMirror mirror_{*connection_, QGuiApplication::desktopFileName().toStdString()};
    EventTaps taps_{[](platform::EventTapCallback /*callback*/, void* /*userInfo*/) {
        return std::make_unique<CommandedTap>();
    }};
    Windows windows_{host_, mirror_};
    OwnWindows ownWindows_{[this](const QWindow& window) {
        return mirror_.activateOwn(window.title().toStdString());
    }};
};

} // namespace

std::unique_ptr<platform::FoundDesktop>
findUnknownDesktop(std::unique_ptr<Connection>& connection) {
    return std::make_unique<FoundDesktop<UnknownDesktop>>(std::move(connection));
}

} // namespace hollowfernpike::wayland
