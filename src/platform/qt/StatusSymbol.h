#pragma once

#include <QIcon>
#include <QString>

namespace hollowfernpike::qt {

/// The drawing of a symbol for panels of any colour, light and dark at once, sharp in every size.
/// Its name is that of the symbol which is installed for us under the name of our desktop file, and
/// which panels can paint in their own colour; empty if none is installed. Null for an unknown
/// symbol.
QIcon statusSymbol(const QString& name);

} // namespace hollowfernpike::qt
