#include "platform/freedesktop/autostart/LoginItem.h"

#include "platform/freedesktop/autostart/AutostartEntry.h"
#include "platform/freedesktop/files/AtomicFile.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/files/FileErrors.h"
#include "platform/freedesktop/files/FileManager.h"

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
    writeFileAtomically(file, entry);
}

} // namespace

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
        throw fileError(FileOperation::remove, file, errno);
    }
}

} // namespace hollowfernpike::freedesktop
