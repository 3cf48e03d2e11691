#pragma once

#include "platform/LocalizedError.h"

#include <iostream>

namespace hollowfernpike {

/// Writes the message to standard error, in both languages.
inline void tell(const platform::LocalizedError& message) {
    std::cerr << message.japanese() << '\n' << message.english() << std::endl;
}

} // namespace hollowfernpike
