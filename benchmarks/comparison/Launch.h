#pragma once

#include "comparison/Builds.h"
#include "comparison/Race.h"

namespace hollowfernpike::bench {

/// Key press to the first statement of a small program's main function.
void measureLaunch(Table& table, const Builds& builds, Rounds rounds);

} // namespace hollowfernpike::bench
