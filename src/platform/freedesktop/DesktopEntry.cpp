#include "platform/freedesktop/DesktopEntry.h"

#include "platform/freedesktop/CommandLine.h"
#include "platform/freedesktop/EntryFile.h"
#include "platform/freedesktop/GlibPointers.h"
#include "platform/freedesktop/LaunchError.h"
#include "platform/freedesktop/ProgramFile.h"
#include "platform/freedesktop/ProgramIdentity.h"

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view suffix = ".desktop";

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// GIO judges an entry whole: it has no word for what is wrong with it.
platform::LocalizedError reasonOfRefusal(const EntryFile& file, const std::string& path) {
    const auto directory = file.text("Path");
    if (const auto tried = file.text("TryExec");
        !tried.empty() && findProgram(tried, directory).empty()) {
        return missingProgram(path, tried);
    }
    const auto words = wordsOf(file.text("Exec"));
    if (!words.empty() && findProgram(words.front(), directory).empty()) {
        return missingProgram(path, words.front());
    }
    return notAnApplication(path);
}

} // namespace

FileStamp stampFrom(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

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
    entry.name = entryName(path);
    const EntryFile file(path);
    entry.stamp = file.stamp();
    const ObjectPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_keyfile(file.keys()));
    if (!info) {
        throw reasonOfRefusal(file, path);
    }
    auto* const application = G_APP_INFO(info.get());
    entry.displayName = orEmpty(g_app_info_get_display_name(application));
    entry.words = wordsOf(orEmpty(g_app_info_get_commandline(application)));
    entry.windowClass = orEmpty(g_desktop_app_info_get_startup_wm_class(info.get()));
    entry.workingDirectory = file.text("Path");
    entry.icon = file.text("Icon");
    entry.programFile =
        resolvedFile(findProgram(identifyingProgram(entry.words), entry.workingDirectory));
    entry.terminal = file.flag("Terminal");
    entry.dbusActivatable = file.flag("DBusActivatable");
    entry.startupNotify = file.flag("StartupNotify");
    entry.hidden = g_desktop_app_info_get_is_hidden(info.get()) != FALSE;
    entry.noDisplay = g_desktop_app_info_get_nodisplay(info.get()) != FALSE;
    return entry;
}

} // namespace hollowfernpike::freedesktop
