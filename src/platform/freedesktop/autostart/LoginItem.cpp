#include "platform/freedesktop/autostart/LoginItem.h"

#include "platform/freedesktop/entries/EntryFile.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/files/FileManager.h"
#include "platform/freedesktop/launching/LaunchError.h"
#include "platform/posix/AtomicFile.h"
#include "platform/posix/FileErrors.h"

#include <cerrno>
#include <optional>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;
using platform::LoginItemStatus;

constexpr auto relativePath = "autostart/app.hollowfernpike.Hollowfernpike.desktop";

std::optional<fs::path> usersEntry() {
    const auto directory = configHome();
    return directory ? std::optional(*directory / relativePath) : std::nullopt;
}

fs::path requiredUsersEntry() {
    const auto file = usersEntry();
    if (!file) {
        throw platform::LocalizedError("ホームフォルダが見つかりません",
                                       "There is no home directory");
    }
    return *file;
}

std::optional<fs::path> everybodysEntry() {
    for (const auto& directory : sharedConfigDirectories()) {
        auto file = directory / relativePath;
        if (file != usersEntry() && FileManager().fileExists(file)) {
            return file;
        }
    }
    return std::nullopt;
}

void write(const fs::path& file, const std::string& entry) {
    FileManager().createDirectory(file.parent_path());
    posix::writeFileAtomically(file, entry);
}

// Set to false by the session settings of GNOME and MATE when the user switches the entry off.
constexpr auto enabledForGnome = "X-GNOME-Autostart-enabled";
constexpr auto enabledForMate = "X-MATE-Autostart-enabled";

bool isSwitchedOff(const EntryFile& file) {
    return file.flag("Hidden") || !file.flag(enabledForGnome, true) ||
           !file.flag(enabledForMate, true);
}

bool startsSomething(const std::string& path) {
    const auto entry = readDesktopEntry(path);
    const auto program = identifyingProgram(commandLineOf(entry));
    return !entry.words.empty() &&
           (program.empty() || !findProgram(program, entry.workingDirectory).empty());
}

class Writer {
public:
    void add(const char* key, const char* value) {
        g_key_file_set_string(keys_.get(), G_KEY_FILE_DESKTOP_GROUP, key, value);
    }

    std::string text() const {
        const TextPointer data(g_key_file_to_data(keys_.get(), nullptr, nullptr));
        return data.get();
    }

private:
    KeyFilePointer keys_{g_key_file_new()};
};

} // namespace

// X-KDE-autostart-after and X-LXQt-Need-Tray make those desktops start us after their panel. There
// is no fixed delay: it would hold back the key combinations, and our status item waits by itself.
std::string autostartEntry(const std::filesystem::path& program, Autostart state) {
    const auto exec = execLineFor(program);
    if (!exec) {
        throw unsayableProgram(program);
    }
    Writer entry;
    entry.add("Type", "Application");
    entry.add("Name", "Hollowfernpike");
    entry.add("Name[ja]", "Hollowfernpike");
    entry.add("Comment", "Brings applications to the front with key combinations");
    entry.add("Comment[ja]", "キーの組み合わせでアプリケーションを前面に表示します");
    entry.add("Exec", exec->c_str());
    entry.add("Icon", "app.hollowfernpike.Hollowfernpike");
    entry.add("Terminal", "false");
    entry.add("StartupNotify", "false");
    if (state == Autostart::off) {
        entry.add("Hidden", "true");
    }
    entry.add(enabledForGnome, "true");
    entry.add("X-KDE-autostart-after", "panel");
    entry.add("X-LXQt-Need-Tray", "true");
    return entry.text();
}

LoginItemStatus statusOfAutostartEntry(const std::string& path) {
    try {
        const EntryFile file(path);
        if (isSwitchedOff(file)) {
            return LoginItemStatus::requiresApproval;
        }
        if (!startsSomething(path)) {
            return LoginItemStatus::notFound;
        }
        return file.isForThisDesktop() ? LoginItemStatus::enabled
                                       : LoginItemStatus::requiresApproval;
    } catch (const platform::LocalizedError&) {
        return LoginItemStatus::notFound;
    }
}

LoginItemStatus LoginItem::status() {
    auto file = usersEntry();
    if (!file || !FileManager().fileExists(*file)) {
        file = everybodysEntry();
    }
    return file ? statusOfAutostartEntry(*file) : LoginItemStatus::notRegistered;
}

void LoginItem::registerItem() {
    write(requiredUsersEntry(), autostartEntry(program_, Autostart::on));
}

void LoginItem::unregisterItem() {
    const auto file = requiredUsersEntry();
    if (everybodysEntry()) {
        write(file, autostartEntry(program_, Autostart::off));
    } else if (::unlink(file.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
        throw posix::fileError(posix::FileOperation::remove, file, errno);
    }
}

} // namespace hollowfernpike::freedesktop
