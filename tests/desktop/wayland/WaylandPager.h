#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// A window as its desktop describes it.
struct PagerWindow {
    pid_t process = 0;
    std::string applicationId;
    std::string title;
    std::string workspace;
    bool isFocused = false;
    bool isVisible = false; ///< as far as the desktop tells
    bool isFullscreen = false;
};

/// Asks a Wayland desktop about windows and workspaces and moves them, as people and their panels
/// do. What a process or a title stands for are all windows that have it.
class WaylandPager {
public:
    WaylandPager() = default;
    WaylandPager(const WaylandPager&) = delete;
    WaylandPager& operator=(const WaylandPager&) = delete;
    virtual ~WaylandPager() = default;

    /// All windows, those that are hidden included.
    virtual std::vector<PagerWindow> windows() const = 0;

    virtual void focus(pid_t process) const = 0;
    virtual void makeFullscreen(pid_t process) const = 0;
    virtual void close(pid_t process) const = 0;
    virtual void focusTitled(const std::string& title) const = 0;
    virtual void closeTitled(const std::string& title) const = 0;

    /// The name of the workspace that has the focus.
    virtual std::string workspace() const = 0;

    /// That of another one, which has no windows as long as nobody brings some there.
    virtual std::string otherWorkspace() const = 0;

    virtual void moveToWorkspace(pid_t process, const std::string& name) const = 0;
    virtual void goToWorkspace(const std::string& name) const = 0;

    /// The first window of that process; absent if it has none.
    std::optional<PagerWindow> windowOf(pid_t process) const;

    /// Whose window has the focus; 0 if no window has it.
    pid_t focusedProcess() const;
};

} // namespace hollowfernpike::test
