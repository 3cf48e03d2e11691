#pragma once

#include <QString>

#include <string>

namespace hollowfernpike {

class FittingLabel;

/// What people call the application at `path`, in the current language; its stored name if the
/// application is gone. Main thread only.
QString shownAppName(const std::string& path, const std::string& storedName);

/// Shows the stored name, by which the application is matched, and as a tool tip what people call
/// it if that is another name. Returns that name; empty if it is the same.
QString showAppName(FittingLabel& label, const std::string& path, const std::string& storedName);

} // namespace hollowfernpike
