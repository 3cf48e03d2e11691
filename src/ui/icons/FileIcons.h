#pragma once

#include "platform/ApplicationBundles.h"

#include <QIcon>

#include <string>

/// Icons ready to be shown, sharp at any scale and never empty: what cannot be found or read looks
/// like an application of no particular kind. Main thread only.
namespace hollowfernpike {

/// From the user's icon theme, else from the icon's own image. Reads files.
QIcon iconFor(const platform::FileIcon& icon);

/// The icon of the application at `path`.
QIcon iconForFile(const std::string& path);

} // namespace hollowfernpike
