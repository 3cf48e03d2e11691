#include "platform/freedesktop/DesktopEntry.h"

#include "platform/freedesktop/CommandLine.h"
#include "platform/freedesktop/GlibPointers.h"
#include "platform/freedesktop/LaunchError.h"
#include "platform/freedesktop/ProgramFile.h"
#include "platform/freedesktop/ProgramIdentity.h"

#include <cerrno>
#include <system_error>

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr off_t largestEntry = 1 << 20;
constexpr std::string_view suffix = ".desktop";

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::string text(GKeyFile* file, const char* key) {
    const TextPointer value(g_key_file_get_string(file, G_KEY_FILE_DESKTOP_GROUP, key, nullptr));
    return orEmpty(value.get());
}

bool flag(GKeyFile* file, const char* key) {
    return g_key_file_get_boolean(file, G_KEY_FILE_DESKTOP_GROUP, key, nullptr) != FALSE;
}

FileStamp stampFrom(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

FileStamp stampOfRegularFile(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        const int reason = errno;
        if (reason == ENOENT || reason == ENOTDIR) {
            throw noSuchApplication(path);
        }
        throw unreadableEntry(path, std::generic_category().message(reason));
    }
    if (!S_ISREG(status.st_mode) || status.st_size > largestEntry) {
        throw notAnApplication(path);
    }
    return stampFrom(status);
}

KeyFilePointer load(const std::string& path) {
    KeyFilePointer file(g_key_file_new());
    GError* failure = nullptr;
    if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, &failure) == FALSE) {
        const ErrorPointer error(failure);
        throw error->domain == G_FILE_ERROR ? unreadableEntry(path, error->message)
                                            : notAnApplication(path);
    }
    return file;
}

// GIO judges an entry whole: it has no word for what is wrong with it.
platform::LocalizedError reasonOfRefusal(GKeyFile* file, const std::string& path) {
    const std::string directory = text(file, "Path");
    if (const auto tried = text(file, "TryExec");
        !tried.empty() && findProgram(tried, directory).empty()) {
        return missingProgram(path, tried);
    }
    const auto words = wordsOf(text(file, "Exec"));
    if (!words.empty() && findProgram(words.front(), directory).empty()) {
        return missingProgram(path, words.front());
    }
    return notAnApplication(path);
}

} // namespace

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return stampFrom(status);
}

std::string entryName(std::string_view path) {
    auto name = path.substr(path.rfind('/') + 1);
    if (name.ends_with(suffix)) {
        name.remove_suffix(suffix.size());
    }
    return std::string{name};
}

DesktopEntry readDesktopEntry(const std::string& path) {
    DesktopEntry entry;
    entry.path = path;
    entry.stamp = stampOfRegularFile(path);
    entry.name = entryName(path);
    const auto file = load(path);
    const ObjectPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_keyfile(file.get()));
    if (!info) {
        throw reasonOfRefusal(file.get(), path);
    }
    auto* const application = G_APP_INFO(info.get());
    entry.displayName = orEmpty(g_app_info_get_display_name(application));
    entry.words = wordsOf(orEmpty(g_app_info_get_commandline(application)));
    entry.windowClass = orEmpty(g_desktop_app_info_get_startup_wm_class(info.get()));
    entry.workingDirectory = text(file.get(), "Path");
    entry.icon = text(file.get(), "Icon");
    entry.programFile =
        resolvedFile(findProgram(identifyingProgram(entry.words), entry.workingDirectory));
    entry.terminal = flag(file.get(), "Terminal");
    entry.dbusActivatable = flag(file.get(), "DBusActivatable");
    entry.startupNotify = flag(file.get(), "StartupNotify");
    entry.hidden = g_desktop_app_info_get_is_hidden(info.get()) != FALSE;
    entry.noDisplay = g_desktop_app_info_get_nodisplay(info.get()) != FALSE;
    return entry;
}

} // namespace hollowfernpike::freedesktop
