#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace hollowfernpike::platform {

/// Ends the process at once: for what cannot happen, and where going on would do harm. What the
/// process holds of the desktop, such as grabs, is released when its connections close.
[[noreturn]] inline void fatalError(std::string_view reason) {
    std::fprintf(stderr, "hollowfernpike: fatal: %.*s\n", static_cast<int>(reason.size()),
                 reason.data());
    std::abort();
}

} // namespace hollowfernpike::platform
