#include "platform/sway/Desktop.h"

#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/ipc/Json.h"
#include "platform/sway/keys/BindingTap.h"
#include "platform/sway/windows/Windows.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"
#include "platform/wayland/recorder/EventTaps.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <QWindow>

#include <unistd.h>

namespace hollowfernpike::sway {

namespace {

/// Where the sway with this process makes its socket unless the environment says otherwise.
std::filesystem::path socketOf(std::int32_t process) {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    return std::filesystem::path(runtime == nullptr ? "/tmp" : runtime) /
           ("sway-ipc." + std::to_string(::getuid()) + '.' + std::to_string(process) + ".sock");
}

/// The socket of this compositor. SWAYSOCK comes second: a user's service manager or session bus
/// may still have that of an earlier session, or the compositor may run inside a sway. Then the
/// name has the number of another process.
std::string socketPath(const wayland::Connection& connection) {
    const auto own = socketOf(connection.compositorProcess());
    std::error_code failure;
    if (std::filesystem::exists(own, failure)) {
        return own;
    }
    const char* const named = std::getenv("SWAYSOCK");
    const std::filesystem::path other = named == nullptr ? "" : named;
    return other.filename().string().starts_with("sway-ipc.") ? std::string{} : other.string();
}

/// i3, whose protocol sway speaks, gives no variant.
bool isSway(IpcClient& ipc) {
    const auto version = ipc.ask(IpcKind::getVersion);
    return version && textMember(parse(*version), "variant") == "sway";
}

class Desktop final : public platform::Desktop {
public:
    Desktop(platform::DesktopHost host, std::unique_ptr<wayland::Connection> connection)
        : host_(std::move(host)), connection_(std::move(connection)) {
        connection_->attach(host_.runLoop, host_.onLost);
    }

    std::optional<platform::Distrust> trustProblem() override {
        if (isSway(ipc_)) {
            return std::nullopt;
        }
        return platform::Distrust{
            {"sway のソケット " + ipc_.path() +
                 " が応答しないため、ショートカットキーを検出できません。"
                 "sway を再起動するか、環境変数 SWAYSOCK を確認してください。",
             "Shortcuts cannot be seen: sway's socket " + ipc_.path() +
                 " does not answer. Restart sway, or check the environment variable SWAYSOCK."}};
    }

    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return tokens_; }

private:
    platform::DesktopHost host_;
    std::unique_ptr<wayland::Connection> connection_;
    IpcClient ipc_{socketPath(*connection_)};
    wayland::SeatKeyboard keyboard_{*connection_};
    wayland::ActivationTokens tokens_{*connection_};
    wayland::EventTaps eventTaps_{[this](platform::EventTapCallback callback, void* userInfo) {
        return std::make_unique<BindingTap>(BindingTap::Services{.queue = host_.mainQueue,
                                                                 .runLoop = host_.runLoop,
                                                                 .ipc = ipc_,
                                                                 .keyboard = keyboard_,
                                                                 .presses = tokens_},
                                            callback, userInfo);
    }};
    Windows windows_{host_, ipc_};
    wayland::OwnWindows ownWindows_{[this](const QWindow& window) {
        return windows_.bringOwnToFront(window.title().toStdString());
    }};
};

} // namespace

std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection) {
    IpcClient ipc(socketPath(*connection));
    if (!isSway(ipc)) {
        return nullptr;
    }
    return std::make_unique<wayland::FoundDesktop<Desktop>>(std::move(connection));
}

} // namespace hollowfernpike::sway
