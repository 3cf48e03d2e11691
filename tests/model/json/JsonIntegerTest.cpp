#include "model/json/JsonNumbers.h"

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {

// The test library finds it by this name, and outside of this file.
// NOLINTNEXTLINE(readability-identifier-naming,misc-use-internal-linkage)
void PrintTo(IntegerFault fault, std::ostream* out) {
    *out << (fault == IntegerFault::notAnInteger ? "not an integer" : "out of range");
}

} // namespace hollowfernpike

namespace hollowfernpike::test {
namespace {

using Result = std::variant<std::uint64_t, IntegerFault>;

constexpr auto max16 = std::numeric_limits<std::uint16_t>::max();
constexpr auto max64 = std::numeric_limits<std::uint64_t>::max();

Result value(std::uint64_t integer) {
    return integer;
}

const Result notAnInteger = IntegerFault::notAnInteger;
const Result outOfRange = IntegerFault::outOfRange;

TEST(JsonIntegerTest, KeepsThe16BitRange) {
    EXPECT_EQ(integerValue("0", max16), value(0));
    EXPECT_EQ(integerValue("65535", max16), value(65535));
    EXPECT_EQ(integerValue("65536", max16), outOfRange);
    EXPECT_EQ(integerValue("70000", max16), outOfRange);
    EXPECT_EQ(integerValue("-1", max16), outOfRange);
}

TEST(JsonIntegerTest, KeepsThe64BitRangeExactly) {
    EXPECT_EQ(integerValue("18446744073709551615", max64), value(max64));
    EXPECT_EQ(integerValue("18446744073709551614", max64), value(max64 - 1));
    EXPECT_EQ(integerValue("9007199254740993", max64), value(9007199254740993));
    EXPECT_EQ(integerValue("10000000000000000000", max64), value(10000000000000000000U));
    EXPECT_EQ(integerValue("18446744073709551616", max64), outOfRange);
    EXPECT_EQ(integerValue("100000000000000000000", max64), outOfRange);
    EXPECT_EQ(integerValue("-18446744073709551615", max64), outOfRange);
    EXPECT_EQ(integerValue(std::string(1000, '9'), max64), outOfRange);
}

TEST(JsonIntegerTest, JudgesByValueNotByForm) {
    EXPECT_EQ(integerValue("1e2", max16), value(100));
    EXPECT_EQ(integerValue("1E+2", max16), value(100));
    EXPECT_EQ(integerValue("100.0", max16), value(100));
    EXPECT_EQ(integerValue("1000e-1", max16), value(100));
    EXPECT_EQ(integerValue("0.65535e5", max16), value(65535));
    EXPECT_EQ(integerValue("6.5536e4", max16), outOfRange);
    EXPECT_EQ(integerValue("18446744073709551615.000", max64), value(max64));
    EXPECT_EQ(integerValue("1.8446744073709551615e19", max64), value(max64));
    EXPECT_EQ(integerValue("1.8446744073709551616e19", max64), outOfRange);
}

TEST(JsonIntegerTest, KnowsZeroInEveryForm) {
    for (const auto* text : {"-0", "0.0", "-0.0", "0e5", "0e-5", "-0.000E+99999999999999999999"}) {
        EXPECT_EQ(integerValue(text, max16), value(0)) << text;
    }
}

TEST(JsonIntegerTest, RefusesFractions) {
    EXPECT_EQ(integerValue("1.5", max16), notAnInteger);
    EXPECT_EQ(integerValue("-1.5", max16), notAnInteger);
    EXPECT_EQ(integerValue("1e-1", max16), notAnInteger);
    EXPECT_EQ(integerValue("100.0000000000000000000000000000000001", max16), notAnInteger);
    EXPECT_EQ(integerValue("1e-99999999999999999999", max16), notAnInteger);
}

TEST(JsonIntegerTest, RefusesHugeExponents) {
    EXPECT_EQ(integerValue("1e20", max64), outOfRange);
    EXPECT_EQ(integerValue("1e9223372036854775807", max64), outOfRange);
    EXPECT_EQ(integerValue("1e99999999999999999999", max64), outOfRange);
    EXPECT_EQ(integerValue("1.5e+99999999999999999999", max64), outOfRange);
    EXPECT_EQ(integerValue("-1e99999999999999999999", max64), outOfRange);
}

} // namespace
} // namespace hollowfernpike::test
