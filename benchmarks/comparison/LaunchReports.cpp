#include "comparison/LaunchReports.h"

#include "support/WaitUntil.h"

#include <cstdint>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

/// As the program writes it.
struct Report {
    std::int64_t nanoseconds = 0; ///< by the monotonic clock
    std::int64_t process = 0;
};

// A copy, because who launches it need not be able to read where it was built.
std::filesystem::path copyInto(const std::filesystem::path& folder) {
    auto program = folder / "launched";
    std::filesystem::copy_file(HFP_LAUNCH_TARGET, program);
    std::filesystem::permissions(
        program, std::filesystem::perms::others_read | std::filesystem::perms::others_exec,
        std::filesystem::perm_options::add);
    return program;
}

void waitForEnd(std::int64_t process) {
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    if (!test::waitUntil([&] { return !std::filesystem::exists(folder); })) {
        throw std::runtime_error("a launched program does not end, or nobody takes note of it");
    }
}

} // namespace

LaunchReports::LaunchReports(const std::filesystem::path& folder)
    : fifo_(folder / "launches"),
      command_(copyInto(folder).string() + ' ' + fifo_.path().string()) {}

std::optional<LaunchReports::Clock::time_point> LaunchReports::whenStarted() const {
    Report report;
    if (!fifo_.wait() || fifo_.read(&report, sizeof report) != sizeof report) {
        return std::nullopt;
    }
    waitForEnd(report.process);
    return Clock::time_point{std::chrono::nanoseconds{report.nanoseconds}};
}

} // namespace hollowfernpike::bench
