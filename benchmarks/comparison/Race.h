#pragma once

#include "comparison/Table.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::bench {

/// How often everybody is measured.
struct Rounds {
    int blocks = 0;
    int perBlock = 0;
};

enum class Role {
    peer,      ///< another hotkey tool
    build,     ///< of the program
    reference, ///< cannot do all that a peer can, and shows what part of the time is not ours
};

/// A contestant that is ready to be started.
struct Racer {
    std::string name;
    Role role{};

    /// Starts it, calls the argument with its process, and ends it. It holds the combination
    /// meanwhile, and not a moment longer.
    std::function<void(const std::function<void(pid_t)>&)> run;
};

/// What one contestant took, in seconds.
struct Series {
    std::string contestant;
    Role role{};
    std::vector<double> seconds;
};

/// Measures all contestants in one interleaved run: in every block each of them runs alone for a
/// few rounds, in another order than in the block before, so that no contestant disturbs another
/// and changes of the machine's speed affect all alike. The first 2 rounds after each start do not
/// count. `measure` is given the contestant's process and returns seconds.
std::vector<Series> race(std::vector<Racer> racers, Rounds rounds,
                         const std::function<double(pid_t)>& measure);

/// How the figures were measured, for their readers.
std::string fairness(Rounds rounds);

/// Adds median and 95th percentile of each series. The first is of the build that is measured; adds
/// its median divided by the best peer's, which the budget is for, and by that of another build.
/// There is at least one peer.
void report(Table& table, const std::vector<Series>& results, std::optional<double> budget);

} // namespace hollowfernpike::bench
