#pragma once

#include "comparison/Table.h"

#include <chrono>

namespace hollowfernpike::bench {

/// What single functions cost: runs each micro benchmark `repetitions` times for at least `atLeast`
/// and adds the medians to the table.
void measureParts(Table& table, int repetitions, std::chrono::milliseconds atLeast);

} // namespace hollowfernpike::bench
