#pragma once

#include "desktop/FrontWatch.h"
#include "desktop/Pager.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"

#include <functional>
#include <optional>
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

    /// Writes an entry for a program and returns the entry's path; `name` is also the class of its
    /// windows.
    std::filesystem::path install(const std::string& name, const std::string& exec) const;

    /// Where open() puts the program of that name. Each program is a copy in a file of its own,
    /// because programs may be told apart by their files.
    std::filesystem::path programFile(const std::string& name) const;

    /// Opens that many windows of one program and returns the first when all can be seen.
    xcb_window_t open(const std::string& name, int windows = 1);

    /// Brings the window to the front as a task bar does, with the keyboard's focus.
    void bringToFront(xcb_window_t window);

    /// Waits until nothing is at work: the X server, the window manager and `process` all sleep.
    void settle(pid_t process);

    /// Holds the combination's modifiers, presses its key and calls `arrival`, which waits for the
    /// effect and returns its time. Returns the seconds from the press to the effect. Throws
    /// std::runtime_error if `arrival` returns nothing.
    double timePress(const std::function<std::optional<Clock::time_point>()>& arrival);

private:
    std::vector<std::unique_ptr<test::ChildProcess>> programs_;
};

} // namespace hollowfernpike::bench
