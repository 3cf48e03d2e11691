#pragma once

#include <functional>
#include <string>

class QWidget;

/// Lets the user choose the entry file of an application that is not installed. Main thread only.
namespace hollowfernpike::EntryFilePanel {

/// Shows the panel on `window`, which takes no input until it is answered, and returns at once. It
/// begins where installed applications lie. `onChosen` is told of the file's path, unless the panel
/// is cancelled or `window` is destroyed first.
void beginSheet(QWidget& window, std::function<void(const std::string& path)> onChosen);

} // namespace hollowfernpike::EntryFilePanel
