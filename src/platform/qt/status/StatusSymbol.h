#pragma once

#include <QIcon>
#include <QString>

namespace hollowfernpike::qt {

/// The drawing of a symbol, legible on light and dark panels and sharp in every size; null for an
/// unknown symbol. The icon's name is that of our installed symbol ("<desktop file>-symbolic"), so
/// that panels can paint it in their own colour; empty if it is not installed.
QIcon statusSymbol(const QString& name);

} // namespace hollowfernpike::qt
