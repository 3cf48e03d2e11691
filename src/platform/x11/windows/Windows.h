#pragma once

#include "platform/Desktop.h"
#include "platform/Windows.h"
#include "platform/x11/taps/UserTime.h"
#include "platform/x11/windows/WindowListChanges.h"
#include "platform/x11/windows/WindowReader.h"

#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike::x11 {

/// The windows as the window manager tells of them (EWMH). Connects on first use: a connection made
/// before the server trusted us would stay untrusted. Main thread only.
class Windows final : public platform::Windows {
public:
    /// What `host` refers to and `userTime` outlive this object, and this object its
    /// subscriptions. The display of the environment if the name is empty.
    Windows(platform::DesktopHost host, const UserTime& userTime, std::string displayName = {});

    /// Connects if not connected yet; null if that fails.
    WindowReader* reader();

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    std::vector<platform::ClientWindow> clientWindows() override;
    bool bringToFront(std::int32_t processIdentifier) override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    const Snapshot* snapshotOfThisTurn();
    const Snapshot* read();
    bool raise(const Snapshot* snapshot, std::int32_t process);
    platform::WindowInfo infoOf(const WindowRecord& record);

    platform::DesktopHost host_;
    const UserTime& userTime_;
    std::string displayName_;
    std::optional<WindowReader> reader_;
    std::optional<WindowListChanges> changes_;
    std::shared_ptr<Windows*> self_ = std::make_shared<Windows*>(this);
    const Snapshot* snapshot_ = nullptr; ///< of this turn of the main loop
};

} // namespace hollowfernpike::x11
