#include "platform/freedesktop/files/PercentEncoding.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::percentEncoded;

TEST(PercentEncodingTest, lettersDigitsAndWhatIsKeptStayAsTheyAre) {
    EXPECT_EQ(percentEncoded("AZaz09-_/", "-_/"), "AZaz09-_/");
    EXPECT_EQ(percentEncoded("", "-"), "");
}

TEST(PercentEncodingTest, everyOtherByteStandsAsItsTwoDigits) {
    EXPECT_EQ(percentEncoded("a/b c%", ""), "a%2fb%20c%25");
    EXPECT_EQ(percentEncoded("日\xFF", "-"), "%e6%97%a5%ff");
    EXPECT_EQ(percentEncoded(std::string_view("\0\n", 2), "-"), "%00%0a");
}

} // namespace
} // namespace hollowfernpike::test
