#pragma once

#include "comparison/Table.h"

#include <chrono>

namespace hollowfernpike::bench {

struct ResidenceEffort {
    std::chrono::seconds idle{};
    int typedKeys = 0;
    int starts = 0;
};

/// What it costs to have the program run: time to start, wake-ups and memory when nothing happens.
void measureResidence(Table& table, ResidenceEffort effort);

} // namespace hollowfernpike::bench
