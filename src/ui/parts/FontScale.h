#pragma once

namespace hollowfernpike {

/// How much larger or smaller than usual the desktop's font for user interfaces is. 1 for 9 to 12
/// points, the sizes that desktops come with. Main thread only.
double fontScale();

/// A length that makes room for larger fonts; never less than `length`. Main thread only.
int grown(int length);

} // namespace hollowfernpike
