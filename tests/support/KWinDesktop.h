#pragma once

#include "support/BusConnection.h"
#include "support/ChildProcess.h"
#include "support/KeyboardMap.h"
#include "support/LentConnection.h"
#include "support/SessionBus.h"
#include "support/SessionFolders.h"
#include "support/TemporaryDirectory.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A program that KWin lets use what is kept from others.
struct KWinRight {
    std::string identifier; ///< of its desktop entry
    std::filesystem::path program;
    std::string interfaces; ///< their names, separated by commas
};

/// How a session on KWin begins.
struct KWinSettings {
    KeyboardLayout layout = {};
    int desktops = 1; ///< virtual ones
    int scale = 1;    ///< pixels of the screen for each of a window, in both directions
    std::vector<KWinRight> rights = {};
};

/// A whole private session on KWin, the compositor of KDE Plasma: home directory, session bus and
/// a screen that nobody looks at, none of them shared with the desktop that the tests run on. There
/// is no panel, and no X server.
///
/// KWin lets a program use some interfaces only if an installed desktop entry says that it may, and
/// knows programs by their files. It does not work for root and must be able to read who its
/// clients are. So where the tests are root's, the whole session is an ordinary user's: start
/// programs with start(), and only from where that user finds them.
class KWinDesktop {
public:
    /// Ready for clients on return; throws std::runtime_error with what KWin says if it does not
    /// get there. KWin begins with the entries that are in the home already.
    explicit KWinDesktop(const KWinSettings& settings = {},
                         Home home = std::make_shared<TemporaryDirectory>());

    const std::filesystem::path& home() const { return folders_.home(); }
    std::filesystem::path dataHome() const { return folders_.dataHome(); }
    std::filesystem::path applications() const { return folders_.applications(); }

    /// What a program needs in its environment to live in this session.
    const Environment& environment() const { return environment_; }

    /// The path of the compositor's socket.
    std::string waylandSocket() const;

    /// The first number of KWin's version.
    int version() const;

    ChildProcess& kwin() { return *kwin_; }
    SessionBus& bus() { return bus_; }

    /// Where the session's user finds a file or program of the tests: a copy, which is made at the
    /// first call, or the file itself if the tests are that user's.
    std::filesystem::path lend(const std::filesystem::path& file) const;

    /// A connection to KWin that may use what is kept from most clients.
    LentConnection lendConnection() const { return LentConnection(lendSocket()); }
    LentSocket lendSocket() const;

    /// Installs a desktop entry for the program, as it is lent. KWin knows within two seconds.
    void grant(const KWinRight& right) const;

    /// Starts a program in this session, as its user. All that tests have put into its folders is
    /// that user's by then.
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes = {}) const;

    /// Has KWin take other layouts into use, as the user's settings do. It does so some time after
    /// the return.
    void use(const KeyboardLayout& layout);

    /// The layouts that it was told last.
    const KeyboardLayout& layout() const { return settings_.layout; }

    /// Switches to one of several layouts; the first is 0. Throws std::runtime_error if KWin
    /// refuses.
    void lockGroup(std::uint32_t group) const;

    /// Kills KWin and starts it anew in the same session, where its clients find the new one in the
    /// place of the old.
    void restart();

private:
    std::filesystem::path configurationFile(const std::string& name) const;
    void startKWin();
    bool isReady() const;

    /// A method of an object on the session bus that answers yes or no.
    struct Method {
        const char* owner;
        const char* object;
        const char* interface;
        const char* name;
    };

    /// Whether the answer is yes. Takes the arguments over if nobody has a share in them yet.
    bool isConfirmed(const Method& method, GVariant* arguments) const;

    SessionFolders folders_;
    TemporaryDirectory ground_; ///< has KWin's program and what is lent
    KWinSettings settings_;
    Environment environment_;
    SessionBus bus_;
    BusConnection busConnection_;
    std::unique_ptr<ChildProcess> kwin_;
};

} // namespace hollowfernpike::test
