#include "platform/wayland/UnknownDesktop.h"

#include "platform/EventTap.h"
#include "platform/Windows.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/FoundDesktop.h"
#include "platform/wayland/OwnWindows.h"
#include "platform/wayland/connection/Connection.h"

#include <cstdlib>
#include <utility>

namespace hollowfernpike::wayland {

namespace {

class NoTaps final : public platform::EventTaps {
public:
    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions,
                                               platform::EventTapCallback, void*) override {
        return nullptr;
    }
};

class NoWindows final : public platform::Windows {
public:
    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override { return {}; }
    std::vector<platform::ClientWindow> clientWindows() override { return {}; }
    bool bringToFront(std::int32_t /*processIdentifier*/) override { return false; }
    std::unique_ptr<platform::Subscription> watch(std::function<void()> /*onChange*/) override {
        return std::make_unique<Nothing>();
    }

private:
    class Nothing final : public platform::Subscription {};
};

/// The session as it calls itself, in brackets, such as " (GNOME)"; empty if it does not.
std::string sessionName() {
    const char* const name = std::getenv("XDG_CURRENT_DESKTOP");
    return name == nullptr || *name == '\0' ? std::string{} : " (" + std::string{name} + ')';
}

class UnknownDesktop final : public platform::Desktop {
public:
    UnknownDesktop(const platform::DesktopHost& host, std::unique_ptr<Connection> connection)
        : connection_(std::move(connection)) {
        connection_->attach(host.runLoop, host.onLost);
    }

    std::optional<platform::Distrust> trustProblem() override {
        const auto name = sessionName();
        return platform::Distrust{
            {"この Wayland セッション" + name +
                 "では、他のプログラムのキー入力を検出する方法がまだありません。"
                 "ログイン画面で KDE Plasma、sway または X11 (Xorg) のセッションを選んでください。"
                 "ショートカットの一覧の表示、削除、書き出しと読み込みは、このセッションでもできま"
                 "す"
                 "。",
             "In this Wayland session" + name +
                 " there is no way yet to see the keys of other programs. "
                 "Choose KDE Plasma, sway or an X11 (Xorg) session when you log in. "
                 "Here the shortcuts can be looked at, deleted, exported and imported."}};
    }

    bool mayBecomeTrusted() override { return false; }
    platform::EventTaps& eventTaps() override { return taps_; }
    platform::Windows& windows() override { return windows_; }
    platform::OwnWindows& ownWindows() override { return ownWindows_; }
    platform::LaunchFeedback& launchFeedback() override { return tokens_; }
    platform::SystemTray* systemTray() override { return nullptr; }

private:
    std::unique_ptr<Connection> connection_;
    NoTaps taps_;
    NoWindows windows_;
    OwnWindows ownWindows_;
    ActivationTokens tokens_{*connection_};
};

} // namespace

std::unique_ptr<platform::FoundDesktop>
findUnknownDesktop(std::unique_ptr<Connection>& connection) {
    return std::make_unique<FoundDesktop>(std::move(connection), [](const auto& host, auto found) {
        return std::make_unique<UnknownDesktop>(host, std::move(found));
    });
}

} // namespace hollowfernpike::wayland
