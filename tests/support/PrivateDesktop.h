#pragma once

#include "support/ChildProcess.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// In pixels.
struct ScreenSize {
    int width = 1280;
    int height = 800;
};

/// An X server of its own without a screen to look at (Xvfb), ready for clients.
class VirtualDisplay {
public:
    /// `name` is the address it shall have; the server chooses one if it is empty.
    explicit VirtualDisplay(const std::string& name = {}, ScreenSize size = {});

    /// Its address, such as ":7".
    const std::string& name() const { return name_; }
    ChildProcess& server() { return *server_; }

private:
    std::unique_ptr<ChildProcess> server_;
    std::string name_;
};

/// A whole private session: home directory, display, window manager and session bus, none of them
/// shared with the desktop that the tests run on. Of what is installed on the machine it sees what
/// programs need, but no applications and nothing that starts by itself.
class PrivateDesktop {
public:
    /// `windowManager` is the name of a program that is one or starts one ("openbox", "metacity",
    /// "gnome-shell"), started and ready on return, or empty for none.
    explicit PrivateDesktop(const std::string& windowManager = "openbox", ScreenSize size = {},
                            Home home = std::make_shared<TemporaryDirectory>());

    const std::string& display() const { return display_.name(); }
    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }
    SessionBus& bus() { return bus_; }
    VirtualDisplay& virtualDisplay() { return display_; }
    ChildProcess& windowManager() { return *windowManager_; }

    /// Has the session see this file or folder below the machine's /usr/share, too.
    void showOfMachine(const std::filesystem::path& part) const { folders_.showOfMachine(part); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// Starts a program in this session.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& arguments,
                                        const Environment& changes = {}) const;

private:
    bool closeFirstOverview() const;

    SessionFolders folders_;
    VirtualDisplay display_;
    Environment environment_;
    SessionBus bus_;
    std::unique_ptr<ChildProcess> windowManager_;
};

/// As callOnBus() of the desktop's environment.
std::string callOnBus(const PrivateDesktop& desktop, const std::vector<std::string>& arguments);

} // namespace hollowfernpike::test
