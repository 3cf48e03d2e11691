#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace hollowfernpike::test {

/// Ends the process, which a fuzzer takes for a finding, unless the condition holds.
inline void require(bool condition, std::string_view what) {
    if (!condition) {
        std::cerr << "broken: " << what << std::endl;
        std::abort();
    }
}

} // namespace hollowfernpike::test
