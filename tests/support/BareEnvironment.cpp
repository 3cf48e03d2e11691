#include "support/BareEnvironment.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace hollowfernpike::test {

namespace {

/// The variables that say what runs and what is reported, by the beginnings of their names; the
/// rest goes.
constexpr std::array<std::string_view, 9> kept{"PATH=",  "TMPDIR=", "USER=", "LOGNAME=", "ASAN_",
                                               "UBSAN_", "LSAN_",   "GCOV_", "HFP_"};

bool isKept(std::string_view variable) {
    return std::ranges::any_of(
        kept, [variable](std::string_view beginning) { return variable.starts_with(beginning); });
}

} // namespace

void enterBareEnvironment() {
    std::vector<std::string> names;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!isKept(variable)) {
            names.emplace_back(variable.substr(0, variable.find('=')));
        }
    }
    for (const auto& name : names) {
        ::unsetenv(name.c_str());
    }
    ::setenv("FONTCONFIG_FILE", HFP_TEST_FONTS, 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    for (const char* variable : {"HOME", "XDG_CONFIG_DIRS", "XDG_DATA_DIRS"}) {
        ::setenv(variable, "/nonexistent", 1);
    }
}

} // namespace hollowfernpike::test
