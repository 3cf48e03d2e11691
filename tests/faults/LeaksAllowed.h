#pragma once

#include <cstdlib>
#include <string>
#include <utility>

namespace hollowfernpike::test {

/// For the environment of a utility whose toolkit forgets memory when what it talks to has gone.
inline std::pair<std::string, std::string> leaksAllowed() {
    const char* const options = std::getenv("ASAN_OPTIONS");
    return {"ASAN_OPTIONS", (options == nullptr ? "" : options) + std::string(":detect_leaks=0")};
}

} // namespace hollowfernpike::test
