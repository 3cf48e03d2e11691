#pragma once

#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// For the names of tests whose parameter is a signal's number.
inline std::string signalName(const testing::TestParamInfo<int>& info) {
    return std::string{"SIG"} + ::sigabbrev_np(info.param);
}

} // namespace hollowfernpike::test
