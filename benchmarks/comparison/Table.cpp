#include "comparison/Table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

constexpr std::size_t nameWidth = 52;
constexpr std::size_t numberWidth = 12;
constexpr double longestTime = 60;

std::string number(double value, int decimals, const char* unit) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f%s", decimals, value, unit);
    return text.data();
}

std::string formatTime(double seconds) {
    if (seconds < 1e-6) {
        return number(seconds * 1e9, 1, " ns");
    }
    return seconds < 1e-3 ? number(seconds * 1e6, 1, " us") : number(seconds * 1e3, 2, " ms");
}

std::string left(std::string text) {
    text.resize(std::max(nameWidth, text.size()), ' ');
    return text;
}

std::string right(const std::string& text) {
    return std::string(numberWidth - std::min(numberWidth, text.size()), ' ') + text;
}

bool isPlausible(const Figure& figure) {
    const bool canBeNothing = figure.unit == Unit::count;
    return std::isfinite(figure.value) &&
           (figure.value > 0 || (canBeNothing && figure.value == 0)) &&
           (figure.unit != Unit::seconds || figure.value < longestTime) &&
           (!figure.percentile95 || *figure.percentile95 >= figure.value);
}

std::string joined(const std::vector<std::string>& parts) {
    std::string result;
    for (const auto& part : parts) {
        result += (result.empty() ? "" : "; ") + part;
    }
    return result;
}

void print(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

} // namespace

std::string format(double value, Unit unit) {
    switch (unit) {
    case Unit::seconds:
        return formatTime(value);
    case Unit::bytes:
        return number(value / (1024 * 1024), 1, " MiB");
    case Unit::count:
        return number(value, 0, "");
    case Unit::ratio:
        return number(value, 2, "");
    }
    throw std::invalid_argument("no such unit");
}

void Table::section(const std::string& title, const std::string& remark) {
    title_ = title;
    print('\n' + left(title) + right("median") + right("95 %") + right("budget"));
    if (!remark.empty()) {
        print("  (" + remark + ')');
    }
}

void Table::add(const Figure& figure) {
    if (!isPlausible(figure)) {
        throw std::range_error(figure.what + " cannot be " + format(figure.value, figure.unit));
    }
    std::string line = left("  " + figure.what) + right(format(figure.value, figure.unit)) +
                       right(figure.percentile95 ? format(*figure.percentile95, figure.unit) : "");
    if (figure.budget) {
        const bool isMet = figure.value <= *figure.budget;
        line += right(format(*figure.budget, figure.unit)) + (isMet ? "  met" : "  MISSED");
        if (!isMet) {
            missed_.push_back(title_ + ": " + figure.what);
        }
    }
    print(line);
}

void Table::addFailure(const std::string& what, const std::string& why) {
    failures_.push_back(what);
    print("  could not be measured: " + why);
}

void Table::finish() const {
    if (!failures_.empty()) {
        print("\nCould not be measured: " + joined(failures_));
    }
    if (!missed_.empty()) {
        print("\nMISSED: " + joined(missed_));
    } else if (failures_.empty()) {
        print("\nNo budget is missed.");
    }
}

} // namespace hollowfernpike::bench
