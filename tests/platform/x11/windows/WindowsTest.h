#pragma once

#include "platform/x11/DesktopObserver.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Events.h"
#include "platform/x11/taps/UserTime.h"
#include "platform/x11/windows/Windows.h"
#include "support/PrivateDesktop.h"
#include "support/WaitUntil.h"
#include "support/fakes/FakeMainQueue.h"
#include "support/fakes/FakeWindowOwners.h"
#include "support/fakes/PolledRunLoop.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A running application of the private desktop, ended with the object.
struct Application {
    std::unique_ptr<ChildProcess> process;
    std::vector<xcb_window_t> windows; ///< in the order in which they were opened

    std::int32_t pid() const { return process->pid(); }
    xcb_window_t window() const { return windows.front(); }
};

/// The number of requests that `action` sends on the connection.
template <class Action>
unsigned int requestsDuring(const x11::Connection& connection, Action action) {
    const auto before = xcb_no_operation(connection.get()).sequence;
    action();
    return xcb_no_operation(connection.get()).sequence - before - 1;
}

/// A display with a window manager (none if its name is empty), and the window service on it.
class WindowsTest : public testing::Test {
protected:
    explicit WindowsTest(const std::string& windowManager = "openbox")
        : desktop_(windowManager), observer_(desktop_.display()) {}

    /// Starts an application of this class and waits until its windows are managed.
    Application open(const std::string& name, std::vector<std::string> options = {},
                     std::size_t count = 1) {
        options.insert(options.begin(), {HFP_PROBE_WINDOW, "--class", "probe," + name});
        options.insert(options.end(), {"--windows", std::to_string(count)});
        Application application{desktop_.start(options), {}};
        const auto isOpen = [&] {
            application.windows = windowsIn(application.process->output());
            return application.windows.size() == count && areManaged(application.windows);
        };
        if (!waitUntil(isOpen)) {
            throw std::runtime_error(name + " did not open: " + application.process->output() +
                                     application.process->errors());
        }
        return application;
    }

    /// The same, and waits until its last window is the active one.
    Application openActive(const std::string& name, const std::vector<std::string>& options = {},
                           std::size_t count = 1) {
        auto application = open(name, options, count);
        EXPECT_TRUE(becomesActive(application.windows.back()));
        return application;
    }

    bool becomesActive(xcb_window_t window) {
        return waitUntil([&] { return observer_.activeWindow() == window; });
    }

    /// The service's own connection, which it makes at its first use.
    const x11::Connection& connection() { return windows_.reader()->connection(); }

    /// What the service has read is not handed out again from here on.
    void endTurn() { queue_.runDue(); }

    /// As if a tap had just delivered a key press, in a new turn of the main loop.
    void pressKey() {
        endTurn();
        userTime_.record(windows_.reader()->events().serverTime(), {});
    }

    /// Owner names of the visible windows from front to back, in a new turn of the main loop.
    std::vector<std::string> names() {
        endTurn();
        std::vector<std::string> result;
        const auto infos = windows_.copyWindowInfo().value();
        for (const auto& info : infos) {
            result.push_back(info.ownerName.value_or("(none)"));
        }
        return result;
    }

    bool namesBecome(const std::vector<std::string>& expected) {
        return waitUntil([&] { return names() == expected; });
    }

    PrivateDesktop desktop_;
    DesktopObserver observer_;
    x11::UserTime userTime_;
    FakeWindowOwners owners_;
    FakeMainQueue queue_;
    PolledRunLoop runLoop_;
    x11::Windows windows_{{queue_, runLoop_, owners_, {}, {}}, userTime_, desktop_.display()};

private:
    static std::vector<xcb_window_t> windowsIn(const std::string& output) {
        const std::string word = "mapped ";
        std::vector<xcb_window_t> windows;
        for (auto at = output.find(word); at != std::string::npos; at = output.find(word, at + 1)) {
            windows.push_back(static_cast<xcb_window_t>(std::stoul(output.substr(at + 7))));
        }
        return windows;
    }

    /// Window managers write their two lists one after the other.
    bool areManaged(const std::vector<xcb_window_t>& windows) {
        const auto stacking = observer_.stacking();
        const auto ages = observer_.numbers(observer_.root(), "_NET_CLIENT_LIST");
        return std::ranges::all_of(windows, [&](auto window) {
            return std::ranges::count(stacking, window) == 1 &&
                   std::ranges::count(ages, window) == 1;
        });
    }
};

} // namespace hollowfernpike::test
