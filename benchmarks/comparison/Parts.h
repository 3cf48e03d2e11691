#pragma once

#include "comparison/Table.h"

#include <chrono>

namespace hollowfernpike::bench {

/// What the parts cost by themselves: runs the micro benchmarks, each several times for at least
/// that long, and adds the medians.
void measureParts(Table& table, int repetitions, std::chrono::milliseconds atLeast);

} // namespace hollowfernpike::bench
