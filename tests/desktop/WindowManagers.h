#pragma once

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// The window managers that a story is told under where their ways differ.
inline auto windowManagers() {
    return testing::Values("openbox", "metacity");
}

inline std::string windowManagerName(const testing::TestParamInfo<const char*>& info) {
    return info.param;
}

} // namespace hollowfernpike::test
