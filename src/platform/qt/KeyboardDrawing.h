#pragma once

#include <QImage>

namespace hollowfernpike::qt {

/// A keyboard, `side` pixels wide and high, with nothing around it: legible on light and on dark
/// grounds alike. Sharp from 16 pixels on.
QImage keyboardDrawing(int side);

} // namespace hollowfernpike::qt
