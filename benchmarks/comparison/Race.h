#pragma once

#include "comparison/Arena.h"
#include "comparison/Contestant.h"
#include "comparison/Table.h"

namespace hollowfernpike::bench {

/// How often everybody is measured.
struct Rounds {
    int blocks = 0;
    int perBlock = 0;
};

/// What one contestant took, in seconds.
struct Series {
    std::string contestant;
    std::vector<double> seconds;
};

/// Measures all contestants in one interleaved run: in every block each of them runs alone for a
/// few rounds, in another order than in the block before, so that no contestant disturbs another
/// and changes of the machine's speed affect all alike. The first 2 rounds after each start do not
/// count. `measure` is given the contestant's process and returns seconds.
std::vector<Series> race(Arena& arena, std::vector<Contestant> contestants, Rounds rounds,
                         const std::function<double(pid_t)>& measure);

/// How the figures were measured, for their readers.
std::string fairness(Rounds rounds);

/// Adds all series, and our median divided by the best peer's. The first series is ours.
void report(Table& table, const std::vector<Series>& results, std::optional<double> budget);

} // namespace hollowfernpike::bench
