#pragma once

#include "platform/ApplicationBundles.h"

#include <QIcon>

#include <string>

namespace hollowfernpike {

/// From the user's icon theme, else from the icon's own image, else a generic one. Its files are
/// read off the main thread once it is drawn; until then it is generic. All windows are drawn again
/// when it is there, unless it looks as it did before. One that the desktop draws is asked for when
/// it is drawn first, in each size; platform::services() must be set then. Main thread only, like
/// all of these.
QIcon iconFor(const platform::FileIcon& icon);

/// Has all icons of files looked for and read again when they are next drawn, because there may be
/// others now, or others in the theme. What they showed stays until then.
void renewFileIcons();

/// The icon of the application at `path`, looked up when it is first drawn, because most icons of a
/// long list are never seen. platform::services() must be set then.
QIcon iconForFile(std::string path);

/// A window without contents, in the colours of the palette, drawn at the size that is asked for.
QIcon genericApplicationIcon();

} // namespace hollowfernpike
