#include "platform/freedesktop/owners/ProcessFacts.h"

#include "platform/posix/Descriptor.h"

#include <array>
#include <charconv>
#include <climits>
#include <ctime>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::size_t longestFile = std::size_t{256} * 1024;
constexpr std::size_t mostArguments = 64;

std::string contents(int directory, const char* name) {
    const posix::Descriptor file(::openat(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::string text;
    std::array<char, 8192> buffer{};
    ssize_t count = 0;
    while (file && text.size() < longestFile &&
           (count = ::read(file.get(), buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

posix::Descriptor processDirectory(std::int32_t process) {
    const auto path = "/proc/" + std::to_string(process);
    return posix::Descriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

template <class Use>
void forEachPart(std::string_view text, char separator, Use use) {
    while (!text.empty()) {
        const auto end = text.find(separator);
        use(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

std::string flatpakApplication(int directory) {
    std::string name;
    std::string_view group;
    const auto text = contents(directory, "root/.flatpak-info");
    forEachPart(text, '\n', [&](std::string_view line) {
        if (line.starts_with('[')) {
            group = line;
        } else if (group == "[Application]" && line.starts_with("name=")) {
            name = line.substr(5);
        }
    });
    return name;
}

std::string controlGroup(int directory) {
    std::string group;
    forEachPart(contents(directory, "cgroup"), '\n', [&](std::string_view line) {
        for (const std::string_view hierarchy : {":name=systemd:", "0::"}) {
            const auto at = line.find(hierarchy);
            const auto path =
                at == std::string_view::npos ? "" : line.substr(at + hierarchy.size());
            if (path.size() > group.size()) {
                group = path;
            }
        }
    });
    return group;
}

std::string executable(int directory) {
    std::array<char, PATH_MAX> path{};
    const auto count = ::readlinkat(directory, "exe", path.data(), path.size());
    std::string_view file(path.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    if (constexpr std::string_view replaced = " (deleted)"; file.ends_with(replaced)) {
        file.remove_suffix(replaced.size());
    }
    return std::string{file};
}

bool isTheLaunched(std::int32_t process, const std::string& launchedNumber) {
    if (!launchedNumber.empty()) {
        return launchedNumber == std::to_string(process);
    }
    const auto status = processStatus(process);
    return status && status->parent == ::getpid();
}

void readEnvironment(int directory, std::int32_t process, ProcessFacts& facts) {
    std::string launchedNumber;
    std::string waylandName;
    std::string runtimeDirectory;
    const std::array<std::pair<std::string, std::string*>, 5> wanted{
        {{std::string{launchedFileVariable} + '=', &facts.launchedEntry},
         {std::string{launchedNumberVariable} + '=', &launchedNumber},
         {"DISPLAY=", &facts.display},
         {"WAYLAND_DISPLAY=", &waylandName},
         {"XDG_RUNTIME_DIR=", &runtimeDirectory}}};
    const auto variables = contents(directory, "environ");
    facts.hasEnvironment = !variables.empty();
    forEachPart(variables, '\0', [&](std::string_view variable) {
        for (const auto& [prefix, value] : wanted) {
            if (variable.starts_with(prefix)) {
                *value = variable.substr(prefix.size());
            }
        }
    });
    facts.waylandSocket = waylandSocket(waylandName, runtimeDirectory);
    if (!facts.launchedEntry.empty() && !isTheLaunched(process, launchedNumber)) {
        facts.launchedEntry.clear();
    }
}

std::vector<std::string> commandLine(int directory) {
    std::vector<std::string> arguments;
    forEachPart(contents(directory, "cmdline"), '\0', [&](std::string_view argument) {
        if (arguments.size() < mostArguments) {
            arguments.emplace_back(argument);
        }
    });
    return arguments;
}

} // namespace

std::string waylandSocket(const std::string& name, const std::string& runtimeDirectory) {
    return name.empty() || name.starts_with('/') ? name : runtimeDirectory + '/' + name;
}

std::optional<ProcessStatus> processStatus(std::int32_t process) {
    const auto directory = processDirectory(process);
    const auto text = contents(directory.get(), "stat");
    const auto nameEnd = text.rfind(") ");
    if (nameEnd == std::string::npos) {
        return std::nullopt;
    }
    ProcessStatus status;
    int field = 3; // the fields behind the name, numbered as proc(5) does
    forEachPart(std::string_view(text).substr(nameEnd + 2), ' ', [&](std::string_view value) {
        switch (field++) {
        case 3:
            status.hasEnded = value == "Z" || value == "X";
            break;
        case 4:
            std::from_chars(value.data(), value.data() + value.size(), status.parent);
            break;
        case 22:
            std::from_chars(value.data(), value.data() + value.size(), status.startTime);
            break;
        default:
            break;
        }
    });
    return status;
}

bool descendsFrom(std::int32_t process, std::int32_t ancestor) {
    auto status = processStatus(process);
    while (status && status->parent != ancestor) {
        status = processStatus(status->parent);
    }
    return status.has_value();
}

ProcessFacts processFacts(std::int32_t process) {
    const auto directory = processDirectory(process);
    ProcessFacts facts;
    if (!directory) {
        return facts;
    }
    facts.flatpakApplication = flatpakApplication(directory.get());
    facts.controlGroup = controlGroup(directory.get());
    facts.executable = executable(directory.get());
    readEnvironment(directory.get(), process, facts);
    facts.commandLine = commandLine(directory.get());
    return facts;
}

std::string commandOf(std::int32_t process) {
    const auto directory = processDirectory(process);
    const auto file = executable(directory.get());
    return file.empty() ? file : file + '\0' + contents(directory.get(), "cmdline");
}

std::uint64_t processClock() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    constexpr std::uint64_t nanosecondsOfASecond = 1'000'000'000;
    const auto ofThisSecond = static_cast<std::uint64_t>(now.tv_nsec) *
                              clockTicks(std::chrono::seconds{1}) / nanosecondsOfASecond;
    return clockTicks(std::chrono::seconds{now.tv_sec}) + ofThisSecond;
}

std::uint64_t clockTicks(std::chrono::seconds time) {
    return static_cast<std::uint64_t>(time.count()) *
           static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
}

} // namespace hollowfernpike::freedesktop
