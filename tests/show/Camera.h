#pragma once

#include <filesystem>
#include <string>

#include <QImage>

namespace hollowfernpike::show {

/// The screen of a display as it is now. Throws std::runtime_error if it cannot be seen.
QImage glance(const std::string& display);

/// The screen of a display once nothing moves on it. Throws std::runtime_error if it does not come
/// to rest.
QImage picture(const std::string& display);

/// Saves a picture (PNG). Throws std::runtime_error if that fails.
void save(const QImage& picture, const std::filesystem::path& file);

/// The smallest part of the picture that holds all pixels of `within` of another colour than
/// `background`, with a margin around it; nothing if there is none.
QImage cropped(const QImage& picture, const QRect& within, QRgb background, int margin);

} // namespace hollowfernpike::show
