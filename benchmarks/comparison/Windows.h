#pragma once

#include "comparison/Table.h"

namespace hollowfernpike::bench {

struct WindowsEffort {
    int starts = 0;  ///< of the program, each with one first opening
    int changes = 0; ///< deletions, imports, openings of the panel: each
};

/// How long people wait for the management window when the list is long: from asking for it until
/// it is painted, and from confirming a change until the list shows it; and for the editor's panel
/// when many applications are installed.
void measureWindows(Table& table, WindowsEffort effort);

} // namespace hollowfernpike::bench
