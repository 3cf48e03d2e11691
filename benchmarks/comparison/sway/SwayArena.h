#pragma once

#include "comparison/KeyPress.h"
#include "desktop/Application.h"
#include "desktop/sway/SwayPager.h"
#include "support/SwayDesktop.h"
#include "support/VirtualKeyboard.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// The private desktop on sway on which contestants are measured, one at a time.
class SwayArena {
public:
    using Clock = std::chrono::steady_clock;

    test::SwayDesktop desktop;
    test::VirtualKeyboard keyboard{desktop.waylandSocket()};
    test::SwayPager pager{desktop.ipc()};

    /// Opens an application with so many windows and further options of the window program; returns
    /// when all windows are there.
    test::Application& open(const std::string& name, int windows = 1,
                            std::vector<std::string> options = {});

    /// Gives its window the keys, as a panel does.
    void bringToFront(const test::Application& application);

    /// Waits until nothing is at work: sway and `process` sleep.
    void settle(pid_t process);

    /// The seconds from a press of the combination to its effect.
    double timePress(const Arrival& arrival);

private:
    int windowsOf(const std::string& name) const;

    std::vector<std::unique_ptr<test::Application>> applications_;
};

} // namespace hollowfernpike::bench
