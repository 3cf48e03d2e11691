#pragma once

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// The window managers for tests of what differs from one window manager to another.
inline auto windowManagers() {
    return testing::Values("openbox", "metacity");
}

inline std::string windowManagerName(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::ranges::replace(name, '-', '_');
    return name;
}

} // namespace hollowfernpike::test
