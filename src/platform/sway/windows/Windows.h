#pragma once

#include "platform/Desktop.h"
#include "platform/Windows.h"
#include "platform/freedesktop/owners/OwnerCache.h"
#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/windows/Tree.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::sway {

/// The windows in sway's tree. "Front to back" is the order in which they were used, since tiled
/// windows do not cover each other. Main thread only.
///
/// Bringing one forward is sway's command "focus": it switches to the window's workspace or tab and
/// fetches it from the scratchpad. If another window of that workspace is fullscreen, sway ends
/// that, since nothing can be shown before it.
class Windows final : public platform::Windows {
public:
    /// What `host` refers to and `ipc` outlive this object.
    Windows(platform::DesktopHost host, IpcClient& ipc);

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    std::vector<platform::ClientWindow> clientWindows() override;
    bool bringToFront(std::int32_t processIdentifier) override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

    /// Brings forward our own window with this title, if need be as soon as sway shows it: a new
    /// window may lie behind a fullscreen one. False if sway cannot be asked.
    bool bringOwnToFront(const std::string& title);

private:
    const std::vector<TreeWindow>* windowsOfThisTurn();
    const std::vector<TreeWindow>* read();
    const platform::WindowOwner& ownerOf(const TreeWindow& window);
    bool focusOwn(const std::string& title);
    bool focus(const TreeWindow* window);

    platform::DesktopHost host_;
    IpcClient& ipc_;
    std::optional<std::vector<TreeWindow>> windows_; ///< of this turn of the main loop
    freedesktop::OwnerCache owners_{host_.windowOwners};
    std::unique_ptr<platform::Subscription> awaited_; ///< a window of ours that is about to come
    unsigned awaits_ = 0;
    std::shared_ptr<Windows*> self_ = std::make_shared<Windows*>(this);
};

} // namespace hollowfernpike::sway
