#pragma once

#include <QIcon>
#include <QString>

namespace hollowfernpike::qt {

/// The drawing of a symbol for panels of any colour, light and dark at once, in the sizes of
/// panels. Null for an unknown name.
QIcon statusSymbol(const QString& name);

/// The symbol that the icon theme has for us under the name of our desktop file, which panels can
/// paint in their own colour; null if none is installed.
QIcon themeStatusSymbol();

} // namespace hollowfernpike::qt
