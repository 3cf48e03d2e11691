#include "platform/freedesktop/files/DirectoryWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

#include <sys/inotify.h>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;

constexpr unsigned events = IN_ATTRIB | IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                            IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

} // namespace

DirectoryWatch::DirectoryWatch()
    : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), isBlind_(!queue_) {}

void DirectoryWatch::add(const fs::path& directory, const std::string& ending) {
    std::error_code unknown;
    if (fs::is_directory(directory, unknown)) {
        if (auto* interest = watch(directory)) {
            interest->endings.push_back(ending);
        }
        return;
    }
    auto missing = directory;
    while (missing.has_relative_path() && !fs::is_directory(missing.parent_path(), unknown)) {
        missing = missing.parent_path();
    }
    if (auto* interest = watch(missing.parent_path())) {
        interest->names.push_back(missing.filename().string());
    }
    hasChanged_ = hasChanged_ || fs::is_directory(directory, unknown);
}

// A directory that is watched for several reasons has one watch and one Interest.
DirectoryWatch::Interest* DirectoryWatch::watch(const fs::path& directory) {
    const int number = ::inotify_add_watch(queue_.get(), directory.c_str(), events);
    const int failure = number < 0 ? errno : 0;
    const bool isGone = failure == ENOENT || failure == ENOTDIR;
    isBlind_ = isBlind_ || (failure != 0 && failure != EACCES && !isGone);
    hasChanged_ = hasChanged_ || isBlind_ || isGone;
    return number < 0 ? nullptr : &interests_[number];
}

bool DirectoryWatch::concerns(int number, const char* name, unsigned mask) const {
    constexpr unsigned aboutTheWatch =
        IN_Q_OVERFLOW | IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;
    const auto interest = interests_.find(number);
    if ((mask & aboutTheWatch) != 0 || interest == interests_.end()) {
        return true;
    }
    const auto& [endings, names] = interest->second;
    const bool isWanted = std::ranges::any_of(endings, [&](const std::string& ending) {
        return (mask & IN_ISDIR) != 0 || std::string_view(name).ends_with(ending);
    });
    return isWanted || std::ranges::find(names, name) != names.end();
}

bool DirectoryWatch::hasChanged() {
    alignas(inotify_event) std::array<char, 16384> buffer{};
    while (!hasChanged_) {
        const auto count = ::read(queue_.get(), buffer.data(), buffer.size());
        if (count <= 0) {
            break;
        }
        for (const char* at = buffer.data(); at < buffer.data() + count;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            hasChanged_ =
                hasChanged_ || concerns(event->wd, event->len > 0 ? event->name : "", event->mask);
            at += sizeof(inotify_event) + event->len;
        }
    }
    return hasChanged_;
}

} // namespace hollowfernpike::freedesktop
