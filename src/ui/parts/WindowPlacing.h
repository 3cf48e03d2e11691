#pragma once

class QWidget;

/// What is done to windows of ours. Main thread only.
namespace hollowfernpike {

/// Moves the window to the middle of its screen, somewhat nearer to the top than to the bottom.
void center(QWidget& window);

/// Shows the window, before our other windows and with the keys.
void makeKeyAndOrderFront(QWidget& window);

} // namespace hollowfernpike
