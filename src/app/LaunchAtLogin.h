#pragma once

/// Whether the program starts when the user logs in. Keeps nothing: the desktop does. Main thread
/// only.
namespace hollowfernpike::LaunchAtLogin {

/// Whether it will. A registration that the user has yet to approve does not count.
bool isEnabled();

/// Registers the program, or takes it out if it is enabled. A failure is logged and changes
/// nothing: ask `isEnabled` for what came of it.
void toggle();

} // namespace hollowfernpike::LaunchAtLogin
