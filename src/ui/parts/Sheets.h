#pragma once

#include <functional>

class QAbstractButton;
class QScreen;
class QWidget;

/// Our windows, and the dialogs that keep the input from them. Main thread only.
namespace hollowfernpike {

/// The screen where the pointer is.
QScreen& usersScreen();

/// Moves the window to the middle of the screen, somewhat nearer to the top than to the bottom.
void center(QWidget& window, const QScreen& screen);

/// Shows the window in front of our other windows and gives it the keyboard focus.
void makeKeyAndOrderFront(QWidget& window);

/// Whether a dialog on the window, or one that blocks all windows, has to be answered first.
bool isBlocked(const QWidget& window);

/// Calls `action` on clicks unless the button's window is blocked. The toolkit itself stops only
/// mouse and keyboard then, not clicks that come over the accessibility bus.
void onClick(QAbstractButton& button, std::function<void()> action);

} // namespace hollowfernpike
