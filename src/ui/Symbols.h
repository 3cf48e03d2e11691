#pragma once

#include <QIcon>

#include <string_view>

namespace hollowfernpike {

/// Which colour a symbol is drawn in. Each is taken from the application's palette when the symbol
/// is drawn, so that icons made earlier follow a change of it.
enum class SymbolTint : unsigned char { text, accent, red };

/// A symbol of ours, sharp at any size and scale; disabled, it is drawn in the colour of disabled
/// text. A null icon for a name that none of them has, and where the toolkit lacks its plug-in for
/// SVG. Main thread only.
///
/// Names: "checkmark.circle", "exclamationmark.triangle", "info.circle", "keyboard", "pencil",
/// "square.and.arrow.down", "square.and.arrow.up", "trash".
QIcon symbolImage(std::string_view name, SymbolTint tint = SymbolTint::text);

} // namespace hollowfernpike
