#pragma once

#include "platform/LocalizedError.h"

#include <iostream>

namespace hollowfernpike {

/// Tells whoever started the program, in both languages, on standard error.
inline void tell(const platform::LocalizedError& message) {
    std::cerr << message.japanese() << '\n' << message.english() << std::endl;
}

} // namespace hollowfernpike
