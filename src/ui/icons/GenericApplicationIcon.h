#pragma once

#include <QIcon>

namespace hollowfernpike {

/// A window without contents, in the colours of the palette, drawn at the size that is asked for.
/// Main thread only.
QIcon genericApplicationIcon();

} // namespace hollowfernpike
