#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace hollowfernpike::platform {

/// Ends the process at once: for what cannot happen, and where going on would do harm. Whatever
/// the process held of the desktop goes back with its connections.
[[noreturn]] inline void fatalError(std::string_view reason) {
    std::fprintf(stderr, "hollowfernpike: fatal: %.*s\n", static_cast<int>(reason.size()),
                 reason.data());
    std::abort();
}

} // namespace hollowfernpike::platform
