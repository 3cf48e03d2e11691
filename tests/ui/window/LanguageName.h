#pragma once

#include "app/Language.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {

/// The test library writes parameters with this.
// NOLINTNEXTLINE(readability-identifier-naming): its name
inline void PrintTo(Language::Case language, std::ostream* out) {
    *out << (language == Language::english ? "english" : "japanese");
}

namespace test {

/// For the names of tests whose parameter is a language.
inline std::string languageName(const testing::TestParamInfo<Language::Case>& info) {
    return testing::PrintToString(info.param);
}

} // namespace test
} // namespace hollowfernpike
