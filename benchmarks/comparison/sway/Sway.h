#pragma once

#include "comparison/Race.h"
#include "comparison/Residence.h"

namespace hollowfernpike::bench {

/// Key press to another application's window having the keys, with few and with many windows.
void measureActivationOnSway(Table& table, Rounds rounds);

/// Key press to the first statement of a small program's main function.
void measureLaunchOnSway(Table& table, Rounds rounds);

/// What it costs to have the program run.
void measureResidenceOnSway(Table& table, ResidenceEffort effort);

} // namespace hollowfernpike::bench
