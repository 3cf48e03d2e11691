#pragma once

#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Gives a variable of the environment another value, or takes it away, for this process and its
/// libraries alone. To be called before there is a second thread.
void setOwnVariable(const std::string& name, const std::optional<std::string>& value);

/// The environment without those changes, as "NAME=value", for programs that we launch.
std::vector<std::string> usersEnvironment();

} // namespace hollowfernpike::freedesktop
