#pragma once

#include "support/SwayIpc.h"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// A window as sway describes it.
struct SwayWindow {
    pid_t process = 0;
    std::string applicationId;
    std::string title;
    std::string workspace;
    bool isFocused = false;
    bool isVisible = false;
    bool isFullscreen = false;
};

/// Asks sway about windows and workspaces and moves them, as people and their panels do.
class SwayPager {
public:
    explicit SwayPager(const SwayIpc& ipc) : ipc_(ipc) {}

    /// All windows, those of the scratchpad included.
    std::vector<SwayWindow> windows() const;

    /// The first window of that process; absent if it has none.
    std::optional<SwayWindow> windowOf(pid_t process) const;

    /// Whose window has the focus; 0 if no window has it.
    pid_t focusedProcess() const;

    /// The name of the workspace that has the focus.
    std::string workspace() const;

    void focus(pid_t process) const { tellWindows(process, "focus"); }
    void moveToWorkspace(pid_t process, const std::string& name) const {
        tellWindows(process, "move container to workspace " + name);
    }
    void moveToScratchpad(pid_t process) const { tellWindows(process, "move scratchpad"); }
    void makeFullscreen(pid_t process) const { tellWindows(process, "fullscreen enable"); }
    void close(pid_t process) const { tellWindows(process, "kill"); }

    /// Goes to a workspace, which need not exist yet.
    void goToWorkspace(const std::string& name) const { run("workspace " + name); }

    /// How the windows of the current workspace are laid out: "tabbed", "stacking", "splith".
    void layOut(const std::string& layout) const { run("layout " + layout); }

    /// Throws std::runtime_error if sway refuses the command.
    void run(const std::string& command) const { ipc_.command(command); }

private:
    void tellWindows(pid_t process, const std::string& command) const;

    const SwayIpc& ipc_;
};

} // namespace hollowfernpike::test
