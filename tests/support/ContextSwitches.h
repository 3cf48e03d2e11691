#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace hollowfernpike::test {

/// How often the threads that a process has now went to sleep so far. The number stays the same
/// exactly as long as nothing wakes any of them, because whoever wakes has to fall asleep again;
/// being interrupted by others does not count.
inline std::uint64_t timesGoneToSleep(pid_t process) {
    constexpr std::string_view name = "voluntary_ctxt_switches:";
    std::uint64_t sum = 0;
    const std::filesystem::path tasks = "/proc/" + std::to_string(process) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);) {
            sum += line.starts_with(name) ? std::stoull(line.substr(name.size())) : 0;
        }
    }
    return sum;
}

} // namespace hollowfernpike::test
