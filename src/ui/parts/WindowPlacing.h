#pragma once

class QWidget;

/// Places and shows our windows. Main thread only.
namespace hollowfernpike {

/// Moves the window to the middle of its screen, somewhat nearer to the top than to the bottom.
void center(QWidget& window);

/// Shows the window in front of our other windows and gives it the keyboard focus.
void makeKeyAndOrderFront(QWidget& window);

} // namespace hollowfernpike
