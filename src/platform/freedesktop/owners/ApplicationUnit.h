#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Names of service-manager units by the desktop's convention for applications:
/// app[-LAUNCHER]-ID-RANDOM.scope, app[-LAUNCHER]-ID[@RANDOM].service.

/// The desktop-file ids that the unit around this control group may stand for, the likeliest first.
/// Empty if the unit is not an application's.
std::vector<std::string> applicationsOfUnit(std::string_view controlGroup);

/// The desktop-file id, "SNAP_APPLICATION", of the snap that lives in this control group (its unit
/// is called snap.SNAP.APPLICATION-UUID.scope); empty outside snaps.
std::string snapApplication(std::string_view controlGroup);

/// The name of the scope for a process of ours; empty if it would be too long for a unit.
std::string applicationScope(std::string_view identifier, int process);

} // namespace hollowfernpike::freedesktop
