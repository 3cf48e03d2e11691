#pragma once

#include "comparison/Builds.h"
#include "comparison/Race.h"
#include "comparison/Residence.h"

namespace hollowfernpike::bench {

/// Key press to another application's window having the keys, with few and with many windows.
void measureActivationOnSway(Table& table, const Builds& builds, Rounds rounds);

/// Key press to the first statement of a small program's main function.
void measureLaunchOnSway(Table& table, const Builds& builds, Rounds rounds);

/// What it costs to have the program run, for each build.
void measureResidenceOnSway(Table& table, const Builds& builds, ResidenceEffort effort);

} // namespace hollowfernpike::bench
