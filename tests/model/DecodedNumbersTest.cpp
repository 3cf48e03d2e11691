#include "model/Documents.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(DecodeNumberTest, keyCodesFrom0To65535) {
    EXPECT_EQ(decodeOne(recordWith("keyCode", "0")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "-0")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "65535")).keyCode, 65535);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "1e2")).keyCode, 100);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "100.0")).keyCode, 100);
}

TEST(DecodeNumberTest, flagWordsOf64BitsExactly) {
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "18446744073709551615")).modifierFlags,
              18446744073709551615U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "9007199254740993")).modifierFlags,
              9007199254740993U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "1.8446744073709551615e19")).modifierFlags,
              18446744073709551615U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "0")).modifierFlags, 0U);
}

TEST(DecodeNumberTest, outOfRange) {
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "65536")),
              ", key \"keyCode\": 65536 is out of range (0 to 65535)");
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "70000")),
              ", key \"keyCode\": 70000 is out of range (0 to 65535)");
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "-1")),
              ", key \"keyCode\": -1 is out of range (0 to 65535)");
    EXPECT_EQ(refusalOfSecond(recordWith("modifierFlags", "-1")),
              ", key \"modifierFlags\": -1 is out of range (0 to 18446744073709551615)");
    EXPECT_EQ(refusalOfSecond(recordWith("modifierFlags", "18446744073709551616")),
              ", key \"modifierFlags\": 18446744073709551616 is out of range (0 to "
              "18446744073709551615)");
}

TEST(DecodeNumberTest, fractions) {
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "1.5")),
              ", key \"keyCode\": 1.5 is not an integer");
    EXPECT_EQ(refusalOfSecond(recordWith("modifierFlags", "1e-1")),
              ", key \"modifierFlags\": 1e-1 is not an integer");
}

TEST(DecodeNumberTest, longNumbersAreCutInTheDescription) {
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", std::string(200, '7'))),
              ", key \"keyCode\": " + std::string(60, '7') + "... is out of range (0 to 65535)");
}

TEST(DecodeNumberTest, formsThatAreNoJsonNumbersAreRefused) {
    for (const auto* text :
         {"+1", "01", ".5", "1.", "1e", "0x10", "NaN", "Infinity", "-", "1_000", "\xEF\xBC\x91"}) {
        EXPECT_EQ(refusal(list(recordWith("keyCode", text))).find("Not valid JSON"), 0U) << text;
    }
}

TEST(DecodeNumberTest, numbersBeyondADoubleAreRefused) {
    EXPECT_EQ(refusal("[\n  1e400]"), "Not valid JSON (line 2, column 3): the number is too large");
}

} // namespace
} // namespace hollowfernpike::test
