#pragma once

#include <QIcon>

#include <string>

namespace hollowfernpike {

/// The icon of the application at `path`, which is not looked for until it is drawn for the first
/// time: of a long list most icons are never seen. The desktop's services must be there then. Main
/// thread only.
QIcon lazyIconForFile(std::string path);

} // namespace hollowfernpike
