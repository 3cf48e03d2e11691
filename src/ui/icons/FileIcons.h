#pragma once

#include "platform/ApplicationBundles.h"

#include <QIcon>

#include <string>

namespace hollowfernpike {

/// From the user's icon theme, else from the icon's own image. Reads files.
QIcon iconFor(const platform::FileIcon& icon);

/// The icon of the application at `path`.
QIcon iconForFile(const std::string& path);

/// A window without contents, in the colours of the palette, drawn at the size that is asked for.
/// Main thread only.
QIcon genericApplicationIcon();

/// The icon of the application at `path`, which is not looked for until it is drawn for the first
/// time: of a long list most icons are never seen. The desktop's services must be there then. Main
/// thread only.
QIcon lazyIconForFile(std::string path);

} // namespace hollowfernpike
