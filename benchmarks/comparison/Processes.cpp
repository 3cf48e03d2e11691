#include "comparison/Processes.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace hollowfernpike::bench {

namespace {

using Clock = std::chrono::steady_clock;

// Longer than a toolkit waits before it draws what has changed.
constexpr std::chrono::milliseconds rest{50};
constexpr int looks = 3; // at least, in a row, with everything asleep

std::filesystem::path folderOf(pid_t process) {
    return std::filesystem::path("/proc") / std::to_string(process);
}

std::string contents(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream{file}.rdbuf();
    return text.str();
}

/// The number behind "NAME:" at the beginning of a line.
std::int64_t valueOf(const std::string& text, const std::string& name) {
    const auto line = ('\n' + text).find('\n' + name + ':');
    if (line == std::string::npos) {
        throw std::runtime_error("the system does not tell " + name);
    }
    return std::stoll(text.substr(line + name.size() + 1));
}

bool isSleepingThread(const std::filesystem::directory_entry& thread) {
    const auto text = contents(thread.path() / "stat");
    const auto nameEnd = text.rfind(')');
    return nameEnd != std::string::npos && text.substr(nameEnd + 1, 2) == " S";
}

bool isAsleep(pid_t process) {
    const std::filesystem::directory_iterator threads(folderOf(process) / "task");
    return std::all_of(begin(threads), end(threads), isSleepingThread);
}

} // namespace

void settle(const std::vector<pid_t>& processes) {
    int quietLooks = 0;
    auto quietSince = Clock::now();
    const auto isQuiet = [&] {
        const auto now = Clock::now();
        const bool asleep = std::ranges::all_of(processes, isAsleep);
        if (!asleep || quietLooks == 0) {
            quietSince = now;
        }
        quietLooks = asleep ? quietLooks + 1 : 0;
        return quietLooks >= looks && now - quietSince >= rest;
    };
    if (!test::waitUntil(isQuiet)) {
        throw std::runtime_error("the desktop does not come to rest");
    }
}

void settle(test::PrivateDesktop& desktop, pid_t process) {
    settle({process, desktop.windowManager().pid(), desktop.virtualDisplay().server().pid()});
}

std::int64_t contextSwitches(pid_t process) {
    std::int64_t sum = 0;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        const auto status = contents(thread.path() / "status");
        sum += valueOf(status, "voluntary_ctxt_switches") +
               valueOf(status, "nonvoluntary_ctxt_switches");
    }
    return sum;
}

Memory memoryOf(pid_t process) {
    constexpr std::int64_t kibibyte = 1024;
    const auto text = contents(folderOf(process) / "smaps_rollup");
    return {.resident = valueOf(text, "Rss") * kibibyte,
            .privateDirty = valueOf(text, "Private_Dirty") * kibibyte};
}

} // namespace hollowfernpike::bench
