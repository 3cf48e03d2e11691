#pragma once

/// Whether the program starts when the user logs in. The desktop stores that; nothing is kept here.
/// Main thread only.
namespace hollowfernpike::LaunchAtLogin {

/// Whether it will start. A registration that the user has yet to approve does not count.
bool isEnabled();

/// Registers the program, or unregisters it if it is enabled. A failure is logged and changes
/// nothing; call `isEnabled` for the result.
void toggle();

} // namespace hollowfernpike::LaunchAtLogin
