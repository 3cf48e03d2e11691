#pragma once

#include "desktop/wayland/WaylandPager.h"
#include "support/WaylandConnection.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace hollowfernpike::test {

/// The windows of a compositor as task bars know them (wlr-foreign-toplevel-management), without
/// workspaces. The process of a window is that of a program in the session's home whose command
/// line has the window's application identifier, as those of Application have.
class ToplevelPager final : public WaylandPager {
public:
    /// `display` is the path of the compositor's socket, which must have a keyboard already.
    ToplevelPager(const std::string& display, std::filesystem::path home);
    ToplevelPager(const ToplevelPager&) = delete;
    ToplevelPager& operator=(const ToplevelPager&) = delete;
    ~ToplevelPager() override;

    std::vector<PagerWindow> windows() const override;
    void focus(pid_t process) const override;
    void makeFullscreen(pid_t process) const override;
    void close(pid_t process) const override;
    void focusTitled(const std::string& title) const override;
    void closeTitled(const std::string& title) const override;

    /// As the button of a title bar does. The windows of the process are hidden on return.
    void minimise(pid_t process) const;
    bool isMinimised(pid_t process) const;

    // There are none: these throw std::logic_error.
    std::string workspace() const override;
    std::string otherWorkspace() const override;
    void moveToWorkspace(pid_t process, const std::string& name) const override;
    void goToWorkspace(const std::string& name) const override;

private:
    struct Toplevel;
    using Condition = std::function<bool(const Toplevel&)>;
    using Request = void (*)(const ToplevelPager& pager, const Toplevel& toplevel);

    void add(zwlr_foreign_toplevel_handle_v1* handle);
    void askOf(const Condition& isWanted, Request request) const;

    pid_t processOf(const Toplevel& toplevel) const;

    std::filesystem::path home_;
    WaylandConnection connection_;
    wl_seat* seat_;
    zwlr_foreign_toplevel_manager_v1* manager_;
    std::vector<std::unique_ptr<Toplevel>> toplevels_;
};

} // namespace hollowfernpike::test
