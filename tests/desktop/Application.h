#pragma once

#include "support/ChildProcess.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// How a window is called in an application's log: on X by its number on the server.
using WindowNumber = std::uint32_t;

/// A key that an application saw going down or up.
struct SeenKey {
    bool down = false;
    unsigned key = 0;
    unsigned state = 0;

    bool operator==(const SeenKey&) const = default;
};

/// How an application of a test behaves.
struct ApplicationTraits {
    std::vector<std::string> options = {}; ///< of the probe window program
    std::string windowClass = {};          ///< empty: one of its own
    std::string program = {};              ///< name of the file; empty: one of its own
    std::string script = {};               ///< run by the entry; "$@" in it starts the program
};

/// The session in which applications live, and the program that opens a window there.
struct ApplicationPlace {
    std::filesystem::path home;
    std::filesystem::path applications; ///< the folder for desktop entries
    std::function<std::unique_ptr<ChildProcess>(const std::vector<std::string>& commandLine,
                                                const Environment& changes)>
        start; ///< starts a program there
    std::filesystem::path windowProgram;
};

/// For a private session of any kind, which outlives this.
template <class Desktop>
ApplicationPlace placeIn(const Desktop& desktop, const std::filesystem::path& windowProgram) {
    return {
        .home = desktop.home(),
        .applications = desktop.applications(),
        .start = [&desktop](const auto& commandLine,
                            const auto& changes) { return desktop.start(commandLine, changes); },
        .windowProgram = windowProgram};
}

/// An application that is installed in a private session: a desktop entry, a program file of its
/// own, and the log that its running copies write. All running copies end with the object, no
/// matter who started them; the files stay as long as the home.
class Application {
public:
    Application(ApplicationPlace place, std::string name, const ApplicationTraits& traits);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    const std::string& name() const { return name_; }
    const std::string& identifier() const { return name_; }
    const std::filesystem::path& entry() const { return entry_; }
    const std::filesystem::path& program() const { return program_; }

    /// Starts a copy without the utility. It lives until the object ends.
    ChildProcess& start(const Environment& changes = {});

    /// Everything its copies have told, in order.
    std::vector<std::string> log() const;

    /// How many copies were ever started.
    std::size_t starts() const;

    /// The processes that run it now, including those that are just ending.
    std::vector<pid_t> copies() const;

    /// Its windows that came to the screen, the oldest first.
    std::vector<WindowNumber> windows() const;

    std::vector<SeenKey> keys() const;

    /// How often the application saw this key go down, or up.
    std::size_t downs(unsigned key) const;
    std::size_t ups(unsigned key) const;

private:
    ApplicationPlace place_;
    std::string name_;
    std::filesystem::path entry_;
    std::filesystem::path program_;
    std::filesystem::path log_;
    std::vector<std::string> arguments_;
    std::vector<std::unique_ptr<ChildProcess>> started_;
};

/// All that these have told, to be read by people.
std::string diaryOf(const std::vector<std::unique_ptr<Application>>& applications);

} // namespace hollowfernpike::test
