#pragma once

#include "support/BusConnection.h"
#include "support/KeyboardMap.h"
#include "support/LentConnection.h"
#include "support/WaylandDesktop.h"

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

/// A private session on KWin, the compositor of KDE Plasma. There is no panel, and no X server.
///
/// KWin lets a program use some interfaces only if an installed desktop entry says that it may, and
/// knows programs by their files. It must be able to read who its clients are. So where the tests
/// are root's, the whole session is an ordinary user's.
class KWinDesktop final : public WaylandDesktop {
public:
    /// Ready for clients on return; throws std::runtime_error with what KWin says if it does not
    /// get there. KWin begins with the entries that are in the home already.
    explicit KWinDesktop(const KWinSettings& settings = {},
                         Home home = std::make_shared<TemporaryDirectory>());

    /// The first number of KWin's version.
    int version() const;

    /// A connection to KWin that may use what is kept from most clients.
    LentConnection lendConnection() const { return LentConnection(lendSocket()); }
    LentSocket lendSocket() const;

    /// Installs a desktop entry for the program, as it is lent. KWin knows within two seconds.
    void grant(const KWinRight& right) const;

    /// Has KWin take other layouts into use, as the user's settings do. It does so some time after
    /// the return.
    void use(const KeyboardLayout& layout);

    /// The layouts that it was told last.
    const KeyboardLayout& layout() const { return settings_.layout; }

    /// Switches to one of several layouts; the first is 0. Throws std::runtime_error if KWin
    /// refuses.
    void lockGroup(std::uint32_t group) const;

    /// Clients find the new KWin in the place of the old one.
    using WaylandDesktop::restart;

private:
    std::filesystem::path configurationFile(const std::string& name) const;
    std::unique_ptr<ChildProcess> startCompositor() override;
    bool isReady() override;

    /// A method of an object on the session bus that answers yes or no.
    struct Method {
        const char* owner;
        const char* object;
        const char* interface;
        const char* name;
    };

    /// Whether the answer is yes. Takes the arguments over if nobody has a share in them yet.
    bool isConfirmed(const Method& method, GVariant* arguments) const;

    KWinSettings settings_;
    BusConnection busConnection_;
};

} // namespace hollowfernpike::test
