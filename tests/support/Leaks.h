#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace hollowfernpike::test {

/// ASAN_OPTIONS with these in addition, for the environment of a program.
inline std::pair<std::string, std::string> sanitizerOptions(const std::string& more) {
    const char* const options = std::getenv("ASAN_OPTIONS");
    return {"ASAN_OPTIONS", (options == nullptr ? "" : options) + (':' + more)};
}

/// For a utility whose toolkit forgets memory when what it talks to has gone.
inline std::pair<std::string, std::string> leaksAllowed() {
    return sanitizerOptions("detect_leaks=0");
}

/// For a utility with leaks reported although the toolkit's plug-in has known ones: those that a
/// file names. To tell whose a leak is takes whole stacks, with which each allocation takes several
/// times as long.
inline std::map<std::string, std::optional<std::string>>
leaksReported(const std::string& known = HFP_KNOWN_LEAKS) {
    return {sanitizerOptions("fast_unwind_on_malloc=0"),
            {"LSAN_OPTIONS", "print_suppressions=0:suppressions=" + known}};
}

} // namespace hollowfernpike::test
