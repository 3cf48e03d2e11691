#pragma once

#include <QByteArray>

namespace hollowfernpike {

/// Whether this drawing can be left to the toolkit: it is well-formed, names no other file, and is
/// neither larger nor deeper than any icon that people draw, however often it repeats its parts.
bool isHarmlessSvg(const QByteArray& text);

} // namespace hollowfernpike
