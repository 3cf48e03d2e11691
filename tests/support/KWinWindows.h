#pragma once

#include "support/WaylandConnection.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace hollowfernpike::test {

/// A window as KWin describes it to task bars.
struct KWinWindow {
    pid_t process = 0;
    std::string applicationId;
    std::string title;
    std::vector<std::string> desktops; ///< identifiers of virtual ones; none: it is on all
    bool isActive = false;
    bool isMinimized = false;
    bool isFullscreen = false;
    bool skipsTaskBar = false;
};

/// The windows of KWin, as it tells them over a connection.
class KWinWindows {
public:
    /// The connection outlives this. Throws std::runtime_error if KWin does not let its client see
    /// windows.
    explicit KWinWindows(WaylandConnection& connection);
    KWinWindows(const KWinWindows&) = delete;
    KWinWindows& operator=(const KWinWindows&) = delete;
    ~KWinWindows();

    /// As KWin describes them now, back to front.
    std::vector<KWinWindow> all();

    using Condition = std::function<bool(const KWinWindow&)>;
    using Request = std::function<void(org_kde_plasma_window*)>;

    /// Sends a request for each window of which the condition holds. KWin has met them on return.
    void ask(const Condition& condition, const Request& request);

private:
    class Window;

    void add(const char* identifier);
    void update();

    WaylandConnection& connection_;
    org_kde_plasma_window_management* management_;
    std::vector<std::unique_ptr<Window>> windows_;
    std::string order_; ///< identifiers, back to front, with semicolons between them
};

} // namespace hollowfernpike::test
