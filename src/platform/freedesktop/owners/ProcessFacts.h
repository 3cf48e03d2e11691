#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// What a process reveals of the application that it runs. What it hides from us is empty. While a
/// program is being loaded or ends, `executable` may be known and the environment not, although the
/// program has one; what has ended tells neither.
struct ProcessFacts {
    std::string flatpakApplication; ///< told by the sandbox that it lives in
    std::string controlGroup;       ///< path in the hierarchy that the service manager keeps
    std::string launchedEntry;      ///< path of the entry by which this very process was started,
                                    ///< by GLib or as a child of ours
    bool hasEnvironment = false;    ///< whether it tells any of its variables
    std::string display;            ///< DISPLAY
    std::string executable;         ///< path of the file
    std::vector<std::string> commandLine;
};

/// By which entry a process was started, and which process that was: its children inherit both
/// variables. GLib sets both; we cannot tell a program its number, but know our children.
inline constexpr auto launchedFileVariable = "GIO_LAUNCHED_DESKTOP_FILE";
inline constexpr auto launchedNumberVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";

/// Where a process stands.
struct ProcessStatus {
    std::int32_t parent = 0;
    std::uint64_t startTime = 0; ///< clock ticks since the system started
    bool hasEnded = false;       ///< a zombie: nobody has waited for it yet

    bool operator==(const ProcessStatus&) const = default;
};

/// Absent if there is no such process.
std::optional<ProcessStatus> processStatus(std::int32_t process);

/// Whether one of the process's parents and their parents, as it stands now, is `ancestor`.
bool descendsFrom(std::int32_t process, std::int32_t ancestor);

ProcessFacts processFacts(std::int32_t process);

/// The file that the process runs and its arguments, to be compared with the same at another time;
/// empty if it does not tell.
std::string commandOf(std::int32_t process);

/// The time since the system started, in clock ticks, comparable with `startTime`.
std::uint64_t processClock();

/// This duration in clock ticks.
std::uint64_t clockTicks(std::chrono::seconds time);

} // namespace hollowfernpike::freedesktop
