#include "platform/freedesktop/entries/EntryFile.h"

#include "platform/freedesktop/launching/LaunchError.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <system_error>

#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr off_t largestEntry = 1 << 20;
constexpr auto desktopGroup = G_KEY_FILE_DESKTOP_GROUP;

FileStamp stampOfRegularFile(const std::string& path) {
    struct stat status = {};
    if (statusAt(path, status) != 0) {
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

std::string contentsOf(const std::string& path) {
    gchar* contents = nullptr;
    gsize length = 0;
    GError* failure = nullptr;
    if (g_file_get_contents(path.c_str(), &contents, &length, &failure) == FALSE) {
        throw unreadableEntry(path, ErrorPointer(failure)->message);
    }
    const TextPointer held(contents);
    return {contents, length};
}

/// Rejects files with a zero byte: GLib would cut a value there.
KeyFilePointer load(const std::string& path, GKeyFileFlags flags) {
    const auto text = contentsOf(path);
    KeyFilePointer file(g_key_file_new());
    if (text.find('\0') != std::string::npos ||
        g_key_file_load_from_data(file.get(), text.data(), text.size(), flags, nullptr) == FALSE) {
        throw notAnApplication(path);
    }
    if (const TextPointer first(g_key_file_get_start_group(file.get()));
        std::string_view(orEmpty(first.get())) != desktopGroup) {
        throw notAnApplication(path);
    }
    return file;
}

std::string taken(char* text) {
    const TextPointer held(text);
    return orEmpty(held.get());
}

std::vector<std::string> taken(char** texts, gsize count) {
    const TextListPointer held(texts);
    return texts == nullptr ? std::vector<std::string>{}
                            : std::vector<std::string>{texts, texts + count};
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
}

} // namespace

EntryFile::EntryFile(const std::string& path, Translations translations)
    : stamp_(stampOfRegularFile(path)),
      keys_(load(path, translations == Translations::all ? G_KEY_FILE_KEEP_TRANSLATIONS
                                                         : G_KEY_FILE_NONE)) {}

bool EntryFile::has(const char* key) const {
    return g_key_file_has_key(keys(), desktopGroup, key, nullptr) != FALSE;
}

std::string EntryFile::text(const char* key) const {
    return taken(g_key_file_get_string(keys(), desktopGroup, key, nullptr));
}

bool EntryFile::flag(const char* key, bool otherwise) const {
    GError* failure = nullptr;
    const bool value = g_key_file_get_boolean(keys(), desktopGroup, key, &failure) != FALSE;
    const ErrorPointer error(failure);
    return error ? otherwise : value;
}

std::vector<std::string> EntryFile::list(const char* key) const {
    gsize count = 0;
    auto* const texts = g_key_file_get_string_list(keys(), desktopGroup, key, &count, nullptr);
    return taken(texts, count);
}

std::string EntryFile::translatedText(const char* key) const {
    return taken(g_key_file_get_locale_string(keys(), desktopGroup, key, nullptr, nullptr));
}

std::string EntryFile::textIn(const std::string& language, const char* key) const {
    return taken(
        g_key_file_get_locale_string(keys(), desktopGroup, key, language.c_str(), nullptr));
}

std::vector<std::string> EntryFile::listIn(const std::string& language, const char* key) const {
    gsize count = 0;
    auto* const texts = g_key_file_get_locale_string_list(keys(), desktopGroup, key,
                                                          language.c_str(), &count, nullptr);
    return taken(texts, count);
}

bool EntryFile::isForThisDesktop() const {
    const auto onlyIn = list(G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
    const auto notIn = list(G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN);
    std::istringstream desktops(orEmpty(std::getenv("XDG_CURRENT_DESKTOP")));
    for (std::string desktop; std::getline(desktops, desktop, ':');) {
        if (contains(onlyIn, desktop)) {
            return true;
        }
        if (contains(notIn, desktop)) {
            return false;
        }
    }
    return !has(G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
}

} // namespace hollowfernpike::freedesktop
