#pragma once

#include "platform/Desktop.h"
#include "platform/NotificationCenter.h"
#include "platform/Windows.h"
#include "platform/freedesktop/owners/OwnerCache.h"
#include "platform/wayland/windows/WindowSource.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace hollowfernpike::wayland {

/// The windows of a desktop that lists them from front to back, as far as it can. Main thread only.
class Windows final : public platform::Windows {
public:
    /// What `host` refers to and the source outlive this object, and this object its subscriptions.
    Windows(const platform::DesktopHost& host, WindowSource& source);
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
    ~Windows() override;

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    std::vector<platform::ClientWindow> clientWindows() override;
    bool bringToFront(std::int32_t processIdentifier) override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    class Watch;

    std::optional<std::vector<ListedWindow>> read();
    std::vector<ListedWindow> windowsOf(std::int32_t processIdentifier);
    const platform::WindowOwner& ownerOf(const ListedWindow& window);
    void tellLater();

    platform::MainQueue& mainQueue_;
    WindowSource& source_;
    freedesktop::OwnerCache owners_;
    platform::NotificationCenter changes_;
    std::weak_ptr<void> watches_; ///< lives as long as there is one
    bool isToTell_ = false;
    std::shared_ptr<Windows*> self_ = std::make_shared<Windows*>(this);
};

} // namespace hollowfernpike::wayland
