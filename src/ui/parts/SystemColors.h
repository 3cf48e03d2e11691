#pragma once

#include <QColor>

class QPalette;

/// Colours for which the palette has no role. They are derived from the palette, so they follow the
/// user's theme. Main thread only.
namespace hollowfernpike {

/// Of hairlines around and between things.
QColor separatorColor(const QPalette& palette);

/// Of secondary text.
QColor secondaryLabelColor(const QPalette& palette);

/// Of what is selected or active, whether or not our window is in front.
QColor accentColor(const QPalette& palette);

/// A translucent tint of the accent, for backgrounds on lists.
QColor accentTintColor(const QPalette& palette);

/// Of text on the accent's tint: the accent, moved towards the text's colour until the contrast is
/// 4.5 (WCAG 2, level AA).
QColor accentTextColor(const QPalette& palette);

/// Of symbols for actions that cannot be undone; with a contrast of at least 3 on lists.
QColor systemRedColor(const QPalette& palette);

} // namespace hollowfernpike
