#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <string>

namespace hollowfernpike {

/// The icon in this file, no larger than `size`: PNG, SVG, XPM or JPEG. Null if there is none to be
/// read or it is refused: what is no regular file, larger than 4 MB, more than 4 MB when unpacked
/// or 4 million pixels, or draws from other files. May wait for a disk. From any thread.
QImage readIconImage(const std::string& file, const QSize& size);

/// The same from what is in the file.
QImage iconImage(const QByteArray& bytes, const QSize& size);

/// Whether these bytes are a picture of pixels, within the same bounds, that can be decoded.
bool isHarmlessPicture(const QByteArray& bytes);

} // namespace hollowfernpike
