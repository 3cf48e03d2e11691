#include "comparison/sway/FocusReports.h"

#include <array>
#include <cstdint>
#include <sstream>

namespace hollowfernpike::bench {

namespace {

/// The time in a line that tells of the keys; absent in all other lines.
std::optional<FocusReports::Clock::time_point> timeIn(const std::string& line) {
    std::istringstream words(line);
    std::string kind;
    std::int64_t window = 0;
    std::int64_t nanoseconds = 0;
    const bool isFocus = words >> kind >> window >> nanoseconds && kind == "focus-in";
    return isFocus ? std::optional{FocusReports::Clock::time_point{
                         std::chrono::nanoseconds{nanoseconds}}}
                   : std::nullopt;
}

} // namespace

void FocusReports::forget() {
    while (readMore()) {
    }
    unread_.clear();
}

std::optional<FocusReports::Clock::time_point> FocusReports::whenFocused() {
    do {
        for (auto end = unread_.find('\n'); end != std::string::npos; end = unread_.find('\n')) {
            const auto line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            if (const auto time = timeIn(line)) {
                return time;
            }
        }
    } while (fifo_.wait() && readMore());
    return std::nullopt;
}

bool FocusReports::readMore() {
    std::array<char, 4096> bytes{};
    const auto count = fifo_.read(bytes.data(), bytes.size());
    unread_.append(bytes.data(), count);
    return count > 0;
}

} // namespace hollowfernpike::bench
