#pragma once

#include "platform/LocalizedError.h"

#include <string>

namespace hollowfernpike::freedesktop {

/// Errors of opening an application; each names the file or program concerned.
platform::LocalizedError noSuchApplication(const std::string& path);
platform::LocalizedError unreadableEntry(const std::string& path, const std::string& reason);
platform::LocalizedError notAnApplication(const std::string& path);
platform::LocalizedError hiddenApplication(const std::string& path);
platform::LocalizedError missingProgram(const std::string& path, const std::string& program);
platform::LocalizedError untrustedEntry(const std::string& path);
platform::LocalizedError noAnswer(const std::string& path);
platform::LocalizedError failedStart(const std::string& path, const std::string& reason);

/// For a program whose path cannot be written in an entry.
platform::LocalizedError unsayableProgram(const std::string& program);

} // namespace hollowfernpike::freedesktop
