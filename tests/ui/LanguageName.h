#pragma once

#include "app/Language.h"

#include <ostream>

namespace hollowfernpike {

/// For the names of tests; the test library chose its own.
// NOLINTNEXTLINE(readability-identifier-naming)
inline void PrintTo(Language::Case language, std::ostream* out) {
    *out << (language == Language::english ? "english" : "japanese");
}

} // namespace hollowfernpike
