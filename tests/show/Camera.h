#pragma once

#include <filesystem>
#include <string>

namespace hollowfernpike::show {

/// Waits until nothing moves on the screen of a display and saves a picture of it (PNG). Throws
/// std::runtime_error if that fails.
void takePicture(const std::string& display, const std::filesystem::path& file);

} // namespace hollowfernpike::show
