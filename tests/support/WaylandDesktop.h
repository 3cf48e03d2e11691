#pragma once

#include "support/ChildProcess.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A whole private session on a Wayland compositor: home directory, session bus and a screen that
/// nobody looks at, none of them shared with the desktop that the tests run on.
///
/// Most compositors do not work for root. So where the tests are root's, the session may be an
/// ordinary user's: start programs with start(), and only from where that user finds them.
class WaylandDesktop {
public:
    WaylandDesktop(const WaylandDesktop&) = delete;
    WaylandDesktop& operator=(const WaylandDesktop&) = delete;

    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }

    /// Has the session see this file or folder below the machine's /usr/share, too.
    void showOfMachine(const std::filesystem::path& part) const { folders_.showOfMachine(part); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// The path of the compositor's socket.
    const std::string& waylandSocket() const { return waylandSocket_; }

    ChildProcess& compositor() { return *compositor_; }
    SessionBus& bus() { return bus_; }

    /// Where the session's user finds a file or program of the tests: a copy, which is made at the
    /// first call, or the file itself if the tests are that user's.
    std::filesystem::path lend(const std::filesystem::path& file) const;

    /// Starts a program in this session, as its user. All that tests have put into its folders is
    /// that user's by then.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes = {}) const;

protected:
    /// `user` runs the programs of the session. `session` are the variables by which programs tell
    /// it from others. `attempts` is how often the compositor is started at most until it is ready.
    WaylandDesktop(Home home, BusOwner user, const Environment& session, int attempts = 1);
    virtual ~WaylandDesktop() = default;

    /// A folder for what is lent, which goes with the session.
    const std::filesystem::path& ground() const { return ground_.path(); }

    /// The session's XDG_RUNTIME_DIR.
    std::filesystem::path runtime() const { return folders_.runtime(); }

    /// Makes all that is in the session's folders by now its user's.
    void giveFolders() const;

    /// What programs find in their environment from then on.
    void setVariable(const std::string& name, const std::string& value) {
        environment_[name] = value;
    }
    void nameSocket(const std::filesystem::path& socket);

    /// Starts the compositor in the place of the one before and waits until it is ready for
    /// clients. Throws std::runtime_error with what it says if it does
    /// not get there.
    void runCompositor();

    /// Kills the compositor and starts it anew in the same session.
    void restart();

    void endCompositor() { compositor_.reset(); }

private:
    bool tryToRunCompositor();
    virtual std::unique_ptr<ChildProcess> startCompositor() = 0;

    /// Whether the compositor is ready for clients. May throw std::runtime_error until then.
    virtual bool isReady() = 0;

    SessionFolders folders_;
    TemporaryDirectory ground_;
    BusOwner user_;
    int attempts_;
    Environment environment_;
    SessionBus bus_;
    std::string waylandSocket_;
    std::unique_ptr<ChildProcess> compositor_;
};

/// The socket for Wayland clients in this directory; empty until there is one.
std::filesystem::path waylandSocketIn(const std::filesystem::path& directory);

} // namespace hollowfernpike::test
