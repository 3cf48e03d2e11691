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

/// Compositors on the library wlroots, all of which run commands by key combinations.
enum class WlrootsCompositor { labwc, sway };

/// A combination that runs a command.
struct KeyCommand {
    std::string labwcKey;  ///< the combination as the attribute of a line of labwc's configuration
    std::string swayKey;   ///< the same for the command "bindcode"
    std::string arguments; ///< of the program, as a shell reads them
};

/// A whole private session on such a compositor: home directory, session bus and a screen that
/// nobody looks at, none of them shared with the desktop that the tests run on. Programs are not
/// told of sway's socket. There is no keyboard until there is a VirtualKeyboard.
///
/// Compositors do not work for root. Where the tests are root's, the whole session is an ordinary
/// user's: start programs with start(), and only from where that user finds them.
class WlrootsDesktop {
public:
    /// The configuration has these commands run the program. Ready for clients on return; throws
    /// std::runtime_error with what the compositor says if it does not get there.
    WlrootsDesktop(WlrootsCompositor kind, const std::filesystem::path& program,
                   const std::vector<KeyCommand>& commands);

    WlrootsCompositor kind() const { return kind_; }
    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// The path of the compositor's socket.
    const std::string& waylandSocket() const { return waylandSocket_; }

    ChildProcess& compositor() { return *compositor_; }
    SessionBus& bus() { return bus_; }

    /// Where the session's user finds a file or program of the tests.
    std::filesystem::path lend(const std::filesystem::path& file) const;

    /// Writes these lines into the part of the configuration that binds keys, and has the
    /// compositor read it. Returns before it has.
    void bindKeys(const std::string& lines);

    /// Starts a program in this session, as its user. All that tests have put into its folders is
    /// that user's by then.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes = {}) const;

private:
    std::filesystem::path configurationFile() const;
    std::string controlSocket() const { return folders_.runtime() / "sway.sock"; }
    std::string lineOf(const KeyCommand& command, const std::filesystem::path& program) const;
    void configure(const std::string& lines) const;
    bool isReady();

    WlrootsCompositor kind_;
    SessionFolders folders_{std::make_shared<TemporaryDirectory>()};
    TemporaryDirectory ground_; ///< has what is lent
    Environment environment_;
    SessionBus bus_;
    std::string waylandSocket_;
    std::unique_ptr<ChildProcess> compositor_;
};

} // namespace hollowfernpike::test
