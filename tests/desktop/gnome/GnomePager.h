#pragma once

#include "desktop/wayland/WaylandPager.h"
#include "support/GnomeDesktop.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// The windows and workspaces of GNOME Shell. Workspaces are called by their numbers from 0 on.
class GnomePager final : public WaylandPager {
public:
    explicit GnomePager(const GnomeDesktop& desktop) : desktop_(desktop) {}

    /// Back to front.
    std::vector<PagerWindow> windows() const override;

    void focus(pid_t process) const override { tellWindows(process, activation); }
    void makeFullscreen(pid_t process) const override {
        tellWindows(process, "window.make_fullscreen()");
    }
    void close(pid_t process) const override { tellWindows(process, deletion); }
    void focusTitled(const std::string& title) const override { tellTitled(title, activation); }
    void closeTitled(const std::string& title) const override { tellTitled(title, deletion); }
    std::string workspace() const override;
    std::string otherWorkspace() const override { return "1"; }
    void moveToWorkspace(pid_t process, const std::string& name) const override {
        tellWindows(process, "window.change_workspace_by_index(" + name + ", false)");
    }
    void goToWorkspace(const std::string& name) const override;

    void minimize(pid_t process) const { tellWindows(process, "window.minimize()"); }

private:
    static constexpr const char* activation =
        "Main.activateWindow(window, global.display.get_current_time_roundtrip())";
    static constexpr const char* deletion =
        "window.delete(global.display.get_current_time_roundtrip())";

    void tellWindows(pid_t process, const std::string& request) const;
    void tellTitled(const std::string& title, const std::string& request) const;
    void tell(const std::string& condition, const std::string& request) const;

    const GnomeDesktop& desktop_;
};

} // namespace hollowfernpike::test
