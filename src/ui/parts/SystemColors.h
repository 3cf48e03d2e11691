#pragma once

#include <QColor>

class QPalette;

/// The colours of the windows beyond the palette's own roles, made from it, so that they follow the
/// user's choice of theme. Main thread only.
namespace hollowfernpike {

/// Of hairlines around and between things.
QColor separatorColor(const QPalette& palette);

/// Of text that stands back.
QColor secondaryLabelColor(const QPalette& palette);

/// Of what is chosen or going on, whether our window is in front or not.
QColor accentColor(const QPalette& palette);

/// Behind what is set off by the accent, on the background of lists.
QColor accentTintColor(const QPalette& palette);

/// Of text on the accent's tint: the accent, moved towards the text's colour as far as a contrast
/// of 4.5 (WCAG 2, level AA) asks for.
QColor accentTextColor(const QPalette& palette);

/// Of symbols that stand for what cannot be taken back; kept at a contrast of 3 on lists.
QColor systemRedColor(const QPalette& palette);

} // namespace hollowfernpike
