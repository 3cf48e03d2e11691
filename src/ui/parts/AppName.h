#pragma once

#include <QString>

#include <string>

namespace hollowfernpike {

class FittingLabel;

/// What people call the application at `path`, in the current language; its stored name if the
/// application is gone. Main thread only.
QString shownAppName(const std::string& path, const std::string& storedName);

/// Shows that name, and the stored one as a tool tip if it is another.
void showAppName(FittingLabel& label, const std::string& path, const std::string& storedName);

} // namespace hollowfernpike
