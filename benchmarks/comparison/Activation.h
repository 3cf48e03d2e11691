#pragma once

#include "comparison/Builds.h"
#include "comparison/Race.h"

namespace hollowfernpike::bench {

/// Key press to another application's window being the active one, with few and with many windows
/// on the desktop.
void measureActivation(Table& table, const Builds& builds, Rounds rounds);

} // namespace hollowfernpike::bench
