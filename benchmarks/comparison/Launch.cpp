#include "comparison/Launch.h"

#include "support/WaitUntil.h"

#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::bench {

namespace {

constexpr double launchBudget = 0.6;

/// Where launched programs report.
class LaunchReports {
public:
    explicit LaunchReports(const std::filesystem::path& path) {
        if (::mkfifo(path.c_str(), S_IRUSR | S_IWUSR) != 0) {
            throw std::system_error(errno, std::generic_category(), path);
        }
        // Open for writing, too, so that reading never meets the end of the file.
        descriptor_ = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    }
    LaunchReports(const LaunchReports&) = delete;
    LaunchReports& operator=(const LaunchReports&) = delete;
    ~LaunchReports() { ::close(descriptor_); }

    struct Report {
        std::int64_t nanoseconds = 0; ///< by the monotonic clock
        std::int64_t process = 0;
    };

    /// Absent after some waiting.
    std::optional<Report> next() const {
        pollfd waiting{descriptor_, POLLIN, 0};
        Report report;
        const bool isRead = ::poll(&waiting, 1, static_cast<int>(test::patience.count())) > 0 &&
                            ::read(descriptor_, &report, sizeof report) == sizeof report;
        return isRead ? std::optional{report} : std::nullopt;
    }

private:
    int descriptor_ = -1;
};

class LaunchScene {
public:
    std::vector<Series> race(Rounds rounds) {
        return bench::race(arena_, contestants(), rounds, [this](pid_t process) {
            arena_.keyboard.strike(interlude.keys());
            arena_.settle(process);
            return arena_.timePress([this] { return whenStarted(); });
        });
    }

private:
    std::vector<Contestant> contestants() const {
        const auto& desktop = arena_.desktop;
        return {
            ours(desktop, {entry_, "Launched"}),
            sxhkd(desktop, "sxhkd", command_),
            xbindkeys(desktop, "xbindkeys", command_),
        };
    }

    std::optional<Arena::Clock::time_point> whenStarted() const {
        const auto report = reports_.next();
        if (!report) {
            return std::nullopt;
        }
        waitForEnd(static_cast<pid_t>(report->process));
        return Arena::Clock::time_point{std::chrono::nanoseconds{report->nanoseconds}};
    }

    static void waitForEnd(pid_t process) {
        const auto folder = std::filesystem::path("/proc") / std::to_string(process);
        if (!test::waitUntil([&] { return !std::filesystem::exists(folder); })) {
            throw std::runtime_error("a launched program does not end, or nobody takes note of it");
        }
    }

    Arena arena_;
    std::filesystem::path fifo_ = arena_.desktop.home() / "launches";
    LaunchReports reports_{fifo_};
    std::string command_ = std::string{HFP_LAUNCH_TARGET} + ' ' + fifo_.string();
    std::filesystem::path entry_ = arena_.install("Launched", command_);
    xcb_window_t other_ = arena_.open("Other");
};

} // namespace

void measureLaunch(Table& table, Rounds rounds) {
    LaunchScene scene;
    table.section("Key press to main() of a program", fairness(rounds));
    report(table, scene.race(rounds), launchBudget);
}

} // namespace hollowfernpike::bench
