#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// Counts how often files of a folder have been opened, and moved there, by their names.
class FolderLog {
public:
    explicit FolderLog(const std::filesystem::path& folder)
        : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        // Closings are not counted but come in between: the kernel makes one of equal events that
        // follow one another.
        ::inotify_add_watch(queue_, folder.c_str(), IN_OPEN | IN_CLOSE | IN_MOVED_TO);
    }
    FolderLog(const FolderLog&) = delete;
    FolderLog& operator=(const FolderLog&) = delete;
    ~FolderLog() { ::close(queue_); }

    int openings(const std::string& name) { return count(IN_OPEN, name); }
    int arrivals(const std::string& name) { return count(IN_MOVED_TO, name); }

    /// How much has happened so far, counted or not.
    int events() {
        readOn();
        return events_;
    }

private:
    int count(std::uint32_t kind, const std::string& name) {
        readOn();
        return counts_[{kind, name}];
    }

    void readOn() {
        alignas(inotify_event) std::array<char, 16384> buffer{};
        for (auto size = read(buffer); size > 0; size = read(buffer)) {
            for (const char* at = buffer.data(); at < buffer.data() + size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                ++counts_[{event->mask & (IN_OPEN | IN_MOVED_TO),
                           event->len > 0 ? event->name : ""}];
                ++events_;
                at += sizeof(inotify_event) + event->len;
            }
        }
    }

    ssize_t read(std::array<char, 16384>& buffer) const {
        return ::read(queue_, buffer.data(), buffer.size());
    }

    int queue_;
    int events_ = 0;
    std::map<std::pair<std::uint32_t, std::string>, int> counts_;
};

} // namespace hollowfernpike::test
