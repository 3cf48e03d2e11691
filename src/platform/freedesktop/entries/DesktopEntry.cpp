#include "platform/freedesktop/entries/DesktopEntry.h"

#include "platform/freedesktop/entries/EntryFile.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/launching/LaunchError.h"

#include <cerrno>

#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view suffix = ".desktop";

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Throws if a program is named and is not there.
void requireProgram(const std::string& program, const EntryFile& file, const std::string& path) {
    if (!program.empty() && findProgram(program, file.text("Path")).empty()) {
        throw missingProgram(path, program);
    }
}

/// The words of the Exec line; none if the line is missing, which is valid only for an application
/// that the bus opens. Throws if the file describes no application or the program is missing.
std::vector<std::string> runnableWords(const EntryFile& file, const std::string& path) {
    const auto exec = file.text("Exec");
    auto words = wordsOf(exec);
    const bool isOpenable = !words.empty() || (exec.empty() && file.flag("DBusActivatable"));
    if (file.text("Type") != "Application" || !isOpenable) {
        throw notAnApplication(path);
    }
    requireProgram(file.text("TryExec"), file, path);
    requireProgram(words.empty() ? "" : words.front(), file, path);
    return words;
}

} // namespace

FileStamp stampFrom(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

int statusAt(const std::string& path, struct stat& status) {
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return -1;
    }
    return ::stat(path.c_str(), &status);
}

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat status = {};
    if (statusAt(path, status) != 0) {
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
    entry.words = runnableWords(file, path);
    entry.displayName = file.translatedText("Name");
    entry.windowClass = file.text("StartupWMClass");
    entry.workingDirectory = file.text("Path");
    entry.icon = file.text("Icon");
    entry.programFile =
        resolvedFile(findProgram(identifyingProgram(entry.words), entry.workingDirectory));
    entry.terminal = file.flag("Terminal");
    entry.dbusActivatable = file.flag("DBusActivatable");
    entry.startupNotify = file.flag("StartupNotify");
    entry.hidden = file.flag("Hidden");
    entry.noDisplay = file.flag("NoDisplay");
    return entry;
}

} // namespace hollowfernpike::freedesktop
