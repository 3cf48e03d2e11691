#pragma once

#include "support/KWinDesktop.h"
#include "support/KWinVirtualDesktops.h"
#include "support/KWinWindows.h"
#include "support/LentConnection.h"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// Asks KWin about windows and virtual desktops and moves them, as people and their panels do. What
/// it tells KWin has happened on return. It does not outlive KWin.
class KWinPager {
public:
    explicit KWinPager(const KWinDesktop& desktop) : connection_(desktop.lendConnection()) {}

    /// All windows, back to front.
    std::vector<KWinWindow> windows() { return windows_.all(); }

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
    KWinVirtualDesktops& desktops() { return desktops_; }

private:
    LentConnection connection_;
    KWinWindows windows_{connection_.get()};
    KWinVirtualDesktops desktops_{connection_.get()};
};

} // namespace hollowfernpike::test
