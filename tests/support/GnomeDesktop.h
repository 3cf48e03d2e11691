#pragma once

#include "support/BusConnection.h"
#include "support/ChildProcess.h"
#include "support/KeptShaders.h"
#include "support/KeyboardMap.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace hollowfernpike::test {

/// How a session on GNOME begins.
struct GnomeSettings {
    KeyboardLayout layout = {};
    bool hasExtension = true;                      ///< the utility's, installed for the user
    bool enablesExtension = true;                  ///< as the user's settings have it
    bool allowsExtensions = true;                  ///< as the switch for all of them has it
    std::vector<std::filesystem::path> shown = {}; ///< see showOfMachine()
    Home home = std::make_shared<TemporaryDirectory>();
};

/// A whole private session on GNOME Shell: home directory, session bus and a screen that nobody
/// looks at, none of them shared with the desktop that the tests run on. It has two workspaces, and
/// no X server.
///
/// The shell does not work for root. So where the tests are root's, the whole session is an
/// ordinary user's: start programs with start(), and only from where that user finds them.
class GnomeDesktop {
public:
    /// Ready for clients on return, with the overview closed; throws std::runtime_error with what
    /// the shell says if it does not get there.
    explicit GnomeDesktop(const GnomeSettings& settings = {});

    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }

    /// Has the session see this file or folder below the machine's /usr/share, too.
    void showOfMachine(const std::filesystem::path& part) const { folders_.showOfMachine(part); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// The path of the compositor's socket.
    std::string waylandSocket() const;

    ChildProcess& shell() { return *shell_; }
    SessionBus& bus() { return bus_; }

    /// A connection to the session bus of the tests' own.
    GDBusConnection* busConnection() const { return busConnection_.get(); }

    /// Where the session's user finds a file or program of the tests: a copy, which is made at the
    /// first call, or the file itself if the tests are that user's.
    std::filesystem::path lend(const std::filesystem::path& file) const;

    /// Starts a program in this session, as its user. All that tests have put into its folders is
    /// that user's by then.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes = {}) const;

    /// What a script comes to in the shell, which waits for a promise. Throws std::runtime_error
    /// with what the shell says if it fails.
    nlohmann::json evaluate(const std::string& script) const;

    /// Has the shell take other layouts into use, as the user's settings do. It does so some time
    /// after the return.
    void use(const KeyboardLayout& layout);

    /// The layouts that it was told last.
    const KeyboardLayout& layout() const { return settings_.layout; }

    /// Installs the utility's extension for the user.
    void installExtension() const;

    /// Whether the shell's own scripts, and its extensions, are modules.
    bool hasModules() const;

    /// The identifier of that one of the utility's extensions which this shell can use.
    std::string extension() const;

    /// Writes a picture of the whole screen, in the format PNG.
    void takePicture(const std::filesystem::path& file) const;

    /// Kills the shell and starts it anew in the same session.
    void restart();

private:
    void writeSettings() const;
    void startShell();
    bool tryToStartShell();
    bool isReady() const;

    SessionFolders folders_;
    KeptShaders shaders_{folders_.home()};
    TemporaryDirectory ground_; ///< has what is lent
    GnomeSettings settings_;
    Environment environment_;
    SessionBus bus_;
    BusConnection busConnection_;
    std::unique_ptr<ChildProcess> shell_;
};

} // namespace hollowfernpike::test
