#include "support/SessionFolders.h"

#include "support/SessionUser.h"

#include <array>
#include <utility>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

constexpr std::array sharedData{"cinnamon",
                                "dbus-1/services/org.a11y.Bus.service",
                                "dbus-1/services/org.cinnamon.ScreenSaver.service",
                                "dbus-1/services/org.xfce.Xfconf.service",
                                "glib-2.0",
                                "icons/Adwaita",
                                "icons/breeze",
                                "icons/breeze-dark",
                                "icons/default",
                                "mime",
                                "themes/Adwaita",
                                "themes/Clearlooks",
                                "themes/Default",
                                "xfce4"};
constexpr std::array sharedConfiguration{"menus", "openbox", "tint2", "xfce4"};

/// The folders for all users, as a session knows them.
fs::path dataIn(const fs::path& shared) {
    return shared / "data";
}
fs::path configurationIn(const fs::path& shared) {
    return shared / "configuration";
}

void share(const fs::path& original, const fs::path& seen) {
    fs::create_directories(seen.parent_path());
    fs::create_symlink(original, seen);
}

void shareParts(const fs::path& shared) {
    fs::create_directories(dataIn(shared) / "applications");
    for (const auto* part : sharedData) {
        share(fs::path("/usr/share") / part, dataIn(shared) / part);
    }
    for (const auto* part : sharedConfiguration) {
        share(fs::path("/etc/xdg") / part, configurationIn(shared) / part);
    }
}

} // namespace

SessionFolders::SessionFolders(Home home) : home_(std::move(home)) {
    shareParts(shared_.path());
    fs::create_directories(applications());
    fs::create_directories(runtime());
    fs::permissions(runtime(), fs::perms::owner_all);
}

void SessionFolders::showOfMachine(const fs::path& part) const {
    share(fs::path("/usr/share") / part, dataIn(shared_.path()) / part);
}

void SessionFolders::giveToSessionUser() const {
    test::giveToSessionUser(home());
    test::giveToSessionUser(shared_.path());
}

Environment SessionFolders::environment() const {
    return {
        {"HOME", home().string()},
        {"XDG_DATA_HOME", dataHome().string()},
        {"XDG_DATA_DIRS", dataIn(shared_.path()).string()},
        {"XDG_CONFIG_HOME", (home() / ".config").string()},
        {"XDG_CONFIG_DIRS", configurationIn(shared_.path()).string()},
        {"XDG_CACHE_HOME", (home() / ".cache").string()},
        {"XDG_RUNTIME_DIR", runtime().string()},
        {"GIO_USE_VFS", "local"},
        {"GSETTINGS_BACKEND", "memory"},
        {"NO_AT_BRIDGE", "1"},
    };
}

} // namespace hollowfernpike::test
