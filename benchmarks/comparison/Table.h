#pragma once

#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

enum class Unit { seconds, bytes, count, ratio };

/// For people: "1.91 ms", "85.0 ns", "24.3 MiB", "0.25".
std::string format(double value, Unit unit);

struct Figure {
    std::string what;
    double value = 0;
    Unit unit = Unit::seconds;
    std::optional<double> percentile95;
    std::optional<double> budget; ///< the figure may be as large as this
};

/// Prints figures as they come, one a line, and remembers which were above their budgets.
class Table {
public:
    /// A title above the figures that follow, and what has to be known about them.
    void section(const std::string& title, const std::string& remark = {});

    /// Throws std::range_error if the figure is impossible on any machine, such as a time below 0.
    void add(const Figure& figure);

    /// What could not be measured, and why.
    void addFailure(const std::string& what, const std::string& why);

    /// Prints what could not be measured and which budgets are missed, or that none is.
    void finish() const;

    bool isComplete() const { return failures_.empty(); }

private:
    std::string title_;
    std::vector<std::string> missed_;
    std::vector<std::string> failures_;
};

} // namespace hollowfernpike::bench
