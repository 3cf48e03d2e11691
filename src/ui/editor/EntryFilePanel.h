#pragma once

#include <functional>
#include <string>

class QWidget;

namespace hollowfernpike {

/// Lets the user choose the entry file of an application, installed or not, in a panel on `window`,
/// which takes no input until it is answered; returns at once. The panel begins where installed
/// applications lie. `onChosen` is told of the file's path, unless the panel is cancelled or
/// `window` is destroyed first. Main thread only.
void beginEntryFilePanel(QWidget& window, std::function<void(const std::string& path)> onChosen);

} // namespace hollowfernpike
