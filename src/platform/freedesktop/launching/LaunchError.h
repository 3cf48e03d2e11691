#pragma once

#include "platform/LocalizedError.h"

#include <string>

namespace hollowfernpike::freedesktop {

/// What can go wrong on the way to a running application, told with the file or program concerned.
platform::LocalizedError noSuchApplication(const std::string& path);
platform::LocalizedError unreadableEntry(const std::string& path, const std::string& reason);
platform::LocalizedError notAnApplication(const std::string& path);
platform::LocalizedError hiddenApplication(const std::string& path);
platform::LocalizedError missingProgram(const std::string& path, const std::string& program);
platform::LocalizedError noAnswer(const std::string& path);
platform::LocalizedError failedStart(const std::string& path, const std::string& reason);

/// A program whose path no entry can name.
platform::LocalizedError unsayableProgram(const std::string& program);

} // namespace hollowfernpike::freedesktop
