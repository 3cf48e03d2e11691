#pragma once

#include <QIcon>

namespace hollowfernpike {

enum class Symbol : unsigned char {
    checkmarkCircle,
    exclamationmarkTriangle,
    infoCircle,
    pencil,
    squareAndArrowDown,
    squareAndArrowUp,
    trash,
};

/// Which colour a symbol is drawn in. Each is taken from the application's palette when the symbol
/// is drawn, so that icons made earlier follow a change of it.
enum class SymbolTint : unsigned char { text, accent, red };

/// A symbol drawn in code, so that no file or plug-in can be missing. Sharp at any size and scale;
/// disabled, it is in the colour of disabled text. Main thread only.
QIcon symbolImage(Symbol symbol, SymbolTint tint = SymbolTint::text);

} // namespace hollowfernpike
