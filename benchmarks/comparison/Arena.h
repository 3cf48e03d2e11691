#pragma once

#include "comparison/KeyPress.h"
#include "comparison/Shortcuts.h"
#include "desktop/FrontWatch.h"
#include "desktop/Pager.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"

#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// The private desktop on which contestants are measured, one at a time.
class Arena {
public:
    using Clock = std::chrono::steady_clock;

    explicit Arena(const std::string& windowManager = "openbox");

    test::PrivateDesktop desktop;
    test::Pager pager{desktop.display()};
    test::KeyInjector keyboard{desktop.display()};
    test::FrontWatch front{desktop.display()};

    /// Writes an entry for a program; `name` is also the class of its windows.
    InstalledApplication install(const std::string& name, const std::string& exec) const;

    /// Where open() puts the program of that name. Each program is a copy in a file of its own,
    /// because programs may be told apart by their files.
    std::filesystem::path programFile(const std::string& name) const;

    /// Opens that many windows of one program and returns the first when all can be seen.
    xcb_window_t open(const std::string& name, int windows = 1);

    /// Brings the window to the front as a task bar does, with the keyboard's focus.
    void bringToFront(xcb_window_t window);

    /// Waits until nothing is at work: the X server, the window manager and `process` all sleep.
    void settle(pid_t process);

    /// The seconds from a press of the combination to its effect.
    double timePress(const Arrival& arrival);

private:
    std::vector<std::unique_ptr<test::ChildProcess>> programs_;
};

} // namespace hollowfernpike::bench
