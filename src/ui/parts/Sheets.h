#pragma once

#include <functional>

class QAbstractButton;
class QWidget;

/// Windows and the dialogs that keep the input from them. Main thread only.
namespace hollowfernpike {

/// Whether a dialog on the window, or one that blocks all windows, has to be answered first.
bool isBlocked(const QWidget& window);

/// Calls `action` on clicks unless the button's window is blocked. The toolkit itself stops only
/// mouse and keyboard then, not clicks that come over the accessibility bus.
void onClick(QAbstractButton& button, std::function<void()> action);

} // namespace hollowfernpike
