#pragma once

#include <functional>

class QAbstractButton;
class QWidget;

/// Windows and the dialogs that keep the input from them. Main thread only.
namespace hollowfernpike {

/// Whether a dialog, on the window or before all windows, has to be answered first.
bool isBlocked(const QWidget& window);

/// Acts on clicks while the button's window is not blocked. The toolkit stops mouse and keyboard
/// then by itself, but not those who click over the accessibility bus.
void onClick(QAbstractButton& button, std::function<void()> action);

} // namespace hollowfernpike
