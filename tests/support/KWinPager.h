#pragma once

#include "support/KWinDesktop.h"
#include "support/KWinVirtualDesktops.h"
#include "support/KWinWindows.h"
#include "support/LentConnection.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// Asks KWin about windows and virtual desktops and moves them, as people and their panels do. What
/// it tells KWin has happened on return.
class KWinPager {
public:
    explicit KWinPager(const KWinDesktop& desktop) : desktop_(desktop) { reconnect(); }

    /// To be called once KWin has been started anew.
    void reconnect() { wire_ = std::make_unique<Wire>(desktop_); }

    /// All windows, back to front.
    std::vector<KWinWindow> windows() { return wire_->windows.all(); }

    /// The first window of that process, back to front; absent if it has none.
    std::optional<KWinWindow> windowOf(pid_t process);

    /// Whose window is active; 0 if none is.
    pid_t activeProcess();

    /// For all windows of that process.
    void activate(pid_t process);
    void minimize(pid_t process);
    void makeFullscreen(pid_t process);
    void close(pid_t process);
    void moveToDesktop(pid_t process, const std::string& identifier);

    /// For all windows with that title.
    void activate(const std::string& title);
    void close(const std::string& title);

    /// Those of KWinSettings are "desktop-1" and so on.
    KWinVirtualDesktops& desktops() { return wire_->desktops; }

private:
    struct Wire {
        explicit Wire(const KWinDesktop& desktop) : connection(desktop.lendConnection()) {}

        LentConnection connection;
        KWinWindows windows{connection.get()};
        KWinVirtualDesktops desktops{connection.get()};
    };

    const KWinDesktop& desktop_;
    std::unique_ptr<Wire> wire_;
};

} // namespace hollowfernpike::test
