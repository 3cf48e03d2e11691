#pragma once

#include "desktop/wayland/WaylandPager.h"
#include "support/SwayIpc.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// The windows and workspaces of sway.
class SwayPager final : public WaylandPager {
public:
    explicit SwayPager(const SwayIpc& ipc) : ipc_(ipc) {}

    /// All windows, those of the scratchpad included.
    std::vector<PagerWindow> windows() const override;

    void focus(pid_t process) const override { tellWindows(process, "focus"); }
    void makeFullscreen(pid_t process) const override { tellWindows(process, "fullscreen enable"); }
    void close(pid_t process) const override { tellWindows(process, "kill"); }
    void focusTitled(const std::string& title) const override { tellTitled(title, "focus"); }
    void closeTitled(const std::string& title) const override { tellTitled(title, "kill"); }

    std::string workspace() const override;
    std::string otherWorkspace() const override { return "away"; }
    void moveToWorkspace(pid_t process, const std::string& name) const override {
        tellWindows(process, "move container to workspace " + name);
    }

    /// The workspace need not exist yet.
    void goToWorkspace(const std::string& name) const override { run("workspace " + name); }

    void moveToScratchpad(pid_t process) const { tellWindows(process, "move scratchpad"); }

    /// How the windows of the current workspace are laid out: "tabbed", "stacking", "splith".
    void layOut(const std::string& layout) const { run("layout " + layout); }

    /// Throws std::runtime_error if sway refuses the command.
    void run(const std::string& command) const { ipc_.command(command); }

private:
    void tellWindows(pid_t process, const std::string& command) const;
    void tellTitled(const std::string& title, const std::string& command) const;

    const SwayIpc& ipc_;
};

} // namespace hollowfernpike::test
