#pragma once

#include "platform/Desktop.h"
#include "platform/NotificationCenter.h"
#include "platform/Windows.h"
#include "platform/freedesktop/owners/OwnerCache.h"
#include "platform/wayland/windows/WindowMirror.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace hollowfernpike::wayland {

/// The windows that the compositor mirrors to us: no question needs an answer from it. Main thread
/// only.
class Windows final : public platform::Windows {
public:
    /// What `host` refers to and the mirror outlive this object, and this object its subscriptions.
    Windows(const platform::DesktopHost& host, WindowMirror& mirror);
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
    ~Windows() override;

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    std::vector<platform::ClientWindow> clientWindows() override;
    bool bringToFront(std::int32_t processIdentifier) override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    std::vector<MirroredWindow> read();
    const platform::WindowOwner& ownerOf(const MirroredWindow& window);
    void tellLater();

    platform::MainQueue& mainQueue_;
    WindowMirror& mirror_;
    freedesktop::OwnerCache owners_;
    platform::NotificationCenter changes_;
    bool isToTell_ = false;
    std::shared_ptr<Windows*> self_ = std::make_shared<Windows*>(this);
};

} // namespace hollowfernpike::wayland
