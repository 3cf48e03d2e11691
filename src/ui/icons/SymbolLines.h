#pragma once

#include "ui/icons/Symbols.h"

#include <QPainterPath>

namespace hollowfernpike {

/// What a symbol is drawn of, by a pen with round ends, on a grid of 20 by 20.
QPainterPath symbolLines(Symbol symbol);

} // namespace hollowfernpike
