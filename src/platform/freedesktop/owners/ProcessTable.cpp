#include "platform/freedesktop/owners/ProcessTable.h"

#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/entries/GlibPointers.h"
#include "platform/freedesktop/entries/Names.h"
#include "platform/freedesktop/owners/WindowOwners.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::chrono::seconds youth{2};

struct DirectoryCloser {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

std::optional<std::int32_t> numberIn(std::string_view text) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end != text.data() ? std::optional(number) : std::nullopt;
}

// A number is reused for another process; the inode of its directory in /proc is not.
struct Listed {
    std::int32_t number;
    ino_t inode;
};

std::vector<Listed> allProcesses() {
    std::vector<Listed> processes;
    const std::unique_ptr<DIR, DirectoryCloser> directory(::opendir("/proc"));
    while (const dirent* entry = directory ? ::readdir(directory.get()) : nullptr) {
        if (const auto number = numberIn(entry->d_name)) {
            processes.push_back({*number, entry->d_ino});
        }
    }
    return processes;
}

// The last field of /proc/loadavg. While it stays the same, no process has started.
std::optional<std::int32_t> newestNumber(const posix::Descriptor& counter) {
    std::array<char, 128> buffer{};
    const auto count = ::pread(counter.get(), buffer.data(), buffer.size(), 0);
    const std::string_view text(buffer.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    return numberIn(text.substr(text.rfind(' ') + 1));
}

bool isOfUser(uid_t user, std::int32_t process) {
    struct stat status = {};
    return ::stat(("/proc/" + std::to_string(process)).c_str(), &status) == 0 &&
           status.st_uid == user;
}

bool startedJustNow(const ProcessStatus& status) {
    return processClock() < status.startTime + clockTicks(youth);
}

std::string_view withoutScreen(std::string_view display) {
    const auto colon = display.rfind(':');
    const auto dot = display.rfind('.');
    const bool hasScreen =
        colon != std::string_view::npos && dot != std::string_view::npos && dot > colon;
    return hasScreen ? display.substr(0, dot) : display;
}

/// Whether the process can show windows where we do: on one of our displays, or perhaps on one that
/// it names in another way than by its environment.
bool isOfThisSession(const ProcessFacts& process) {
    const std::string ourDisplay = orEmpty(std::getenv("DISPLAY"));
    const auto ourSocket = waylandSocket(orEmpty(std::getenv("WAYLAND_DISPLAY")),
                                         orEmpty(std::getenv("XDG_RUNTIME_DIR")));
    const bool namesNone = process.display.empty() && process.waylandSocket.empty();
    const bool weHaveNone = ourDisplay.empty() && ourSocket.empty();
    return namesNone || weHaveNone || (!ourSocket.empty() && process.waylandSocket == ourSocket) ||
           (!ourDisplay.empty() && withoutScreen(process.display) == withoutScreen(ourDisplay));
}

} // namespace

void sortByAge(std::vector<LiveProcess>& processes) {
    std::ranges::sort(processes, {}, [](const auto& process) {
        return std::tuple(process.status.hasEnded, process.status.startTime, process.number);
    });
}

ProcessTable::ProcessTable(DesktopEntries& entries, uid_t user)
    : entries_(entries), user_(user), counter_(::open("/proc/loadavg", O_RDONLY | O_CLOEXEC)) {}

void ProcessTable::refresh() {
    const auto newest = newestNumber(counter_);
    const auto generation = entries_.generation();
    if (generation != generation_) {
        processes_.clear();
        newest_.reset();
        generation_ = generation;
    }
    for (auto& [number, known] : processes_) {
        if (known.isUnsettled || hasBecomeAnother(number, known)) {
            look(number, known);
        }
    }
    if (!newest || newest != newest_) {
        scan();
        newest_ = newest;
    }
}

void ProcessTable::scan() {
    ++scans_;
    for (const auto [number, inode] : allProcesses()) {
        auto& known = processes_[number];
        if (known.inode != inode) {
            known = {};
            known.inode = inode;
            look(number, known);
        }
        known.scan = scans_;
    }
    std::erase_if(processes_, [&](const auto& process) { return process.second.scan != scans_; });
}

// The known application is kept while a process replaces its program, while it ends, and once it
// has ended: there is nothing to read then.
void ProcessTable::look(std::int32_t process, Known& known) const {
    const auto status = isOfUser(user_, process) ? processStatus(process) : std::nullopt;
    if (!status || status->startTime != known.status.startTime) {
        const auto inode = known.inode;
        known = {};
        known.inode = inode;
    }
    known.status = status.value_or(ProcessStatus{});
    known.isUnsettled = false;
    if (!status || status->hasEnded) {
        return;
    }
    auto command = commandOf(process); // before the facts, so that a change in between is noticed
    const auto facts = processFacts(process);
    const bool isWhole = facts.hasEnvironment || (facts.executable.empty() && !known.hasTold);
    const bool mayTellMore = !isWhole && isMissingForAMoment(known);
    known.isUnsettled = mayTellMore || startedJustNow(*status);
    known.hasTold = known.hasTold || !facts.executable.empty();
    if (isWhole || (!mayTellMore && !facts.executable.empty())) {
        known.missingSince.reset();
        known.identifier = applicationOf(facts);
        known.command = isInterpreter(fileName(facts.executable)) ? std::move(command) : "";
    }
}

// An environment that is missing for longer than `youth` is empty or hidden.
bool ProcessTable::isMissingForAMoment(Known& known) {
    known.missingSince = known.missingSince.value_or(processClock());
    return processClock() < *known.missingSince + clockTicks(youth);
}

// For example, a script waits for something and then replaces itself by the program (exec).
bool ProcessTable::hasBecomeAnother(std::int32_t process, const Known& known) {
    if (known.command.empty()) {
        return false;
    }
    const auto command = commandOf(process);
    return !command.empty() && command != known.command;
}

std::string ProcessTable::applicationOf(const ProcessFacts& process) const {
    if (!isOfThisSession(process)) {
        return {};
    }
    const auto* entry = freedesktop::applicationOf(process, entries_.index());
    return entry == nullptr ? std::string{} : entry->identifier;
}

bool ProcessTable::isHelper(const LiveProcess& process,
                            const std::vector<LiveProcess>& candidates) const {
    auto ancestor = process.status.parent;
    for (std::size_t generation = 0; generation < processes_.size(); ++generation) {
        const auto isAncestor = [&](const auto& other) {
            return other.number == ancestor && !other.status.hasEnded;
        };
        if (std::ranges::any_of(candidates, isAncestor)) {
            return true;
        }
        const auto known = processes_.find(ancestor);
        if (known == processes_.end()) {
            return false;
        }
        ancestor = known->second.status.parent;
    }
    return false;
}

std::vector<LiveProcess> ProcessTable::running(std::string_view identifier) {
    refresh();
    std::vector<LiveProcess> candidates;
    for (const auto& [number, known] : processes_) {
        if (known.identifier != identifier) {
            continue;
        }
        const auto status = processStatus(number);
        if (status && status->startTime == known.status.startTime) {
            candidates.push_back({number, *status});
        }
    }
    auto instances = candidates;
    std::erase_if(instances, [&](const auto& process) { return isHelper(process, candidates); });
    sortByAge(instances);
    return instances;
}

std::string ProcessTable::applicationOf(std::int32_t process) {
    refresh();
    const auto known = processes_.find(process);
    return known == processes_.end() ? std::string{} : known->second.identifier;
}

} // namespace hollowfernpike::freedesktop
