#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// What a process reveals of the application that it runs. What we cannot read is empty. While a
/// program is being loaded or ends, its environment may be unreadable although `executable` is
/// known. Of a process that has ended, neither can be read.
struct ProcessFacts {
    std::string flatpakApplication; ///< told by the sandbox that it lives in
    std::string controlGroup;       ///< path in the hierarchy that the service manager keeps
    std::string launchedEntry;      ///< path of the entry by which this very process was started,
                                    ///< by GLib or as a child of ours
    bool hasEnvironment = false;    ///< whether it tells any of its variables
    std::string display;            ///< DISPLAY
    std::string waylandSocket;      ///< path that WAYLAND_DISPLAY stands for
    std::string executable;         ///< path of the file
    std::vector<std::string> commandLine;
};

/// The variables that name the entry a process was started by, and the number of that process: its
/// children inherit both variables, and have other numbers. GLib sets both. We set only the first,
/// because the number is not known before the start; we recognise our own children by their parent.
inline constexpr auto launchedFileVariable = "GIO_LAUNCHED_DESKTOP_FILE";
inline constexpr auto launchedNumberVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";

/// The path of a Wayland compositor's socket that a process with these variables connects to: the
/// name is a path, or lies in the runtime directory. Empty without a name.
std::string waylandSocket(const std::string& name, const std::string& runtimeDirectory);

/// The parent, start and end of a process.
struct ProcessStatus {
    std::int32_t parent = 0;
    std::uint64_t startTime = 0; ///< clock ticks since the system started
    bool hasEnded = false;       ///< a zombie: nobody has waited for it yet

    bool operator==(const ProcessStatus&) const = default;
};

/// Absent if there is no such process.
std::optional<ProcessStatus> processStatus(std::int32_t process);

/// Whether `ancestor` is at present the parent of the process, or its parent's parent, and so on.
bool descendsFrom(std::int32_t process, std::int32_t ancestor);

ProcessFacts processFacts(std::int32_t process);

/// The file that the process runs and its arguments, to be compared with a later reading; empty if
/// the file cannot be read.
std::string commandOf(std::int32_t process);

/// The time since the system started, in clock ticks, comparable with `startTime`.
std::uint64_t processClock();

/// This duration in clock ticks.
std::uint64_t clockTicks(std::chrono::seconds time);

} // namespace hollowfernpike::freedesktop
