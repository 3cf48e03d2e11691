#pragma once

#include <QFont>

namespace hollowfernpike {

/// The desktop's font for user interfaces, `size` device-independent pixels high. Main thread only.
QFont systemFont(int size, QFont::Weight weight);

} // namespace hollowfernpike
