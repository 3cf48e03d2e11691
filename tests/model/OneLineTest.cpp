#include "model/OneLine.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(OneLineTest, LeavesTextAsItIs) {
    EXPECT_EQ(oneLine(""), "");
    EXPECT_EQ(oneLine("「/home/a b」: 100% \"x\" \\ 日本語 😀 \u00A0\u00E9"),
              "「/home/a b」: 100% \"x\" \\ 日本語 😀 \u00A0\u00E9");
}

TEST(OneLineTest, EscapesControlCharacters) {
    EXPECT_EQ(oneLine("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(oneLine(std::string_view{"\0\x01\x1B\x1F\x7F", 5}),
              "\\u0000\\u0001\\u001b\\u001f\\u007f");
    EXPECT_EQ(oneLine("\u0080\u0085\u009B\u009F"), "\\u0080\\u0085\\u009b\\u009f");
}

TEST(OneLineTest, EscapesLineAndParagraphSeparators) {
    EXPECT_EQ(oneLine("a\u2028b\u2029c"), "a\\u2028b\\u2029c");
}

TEST(OneLineTest, EscapesBytesThatAreNotUtf8) {
    EXPECT_EQ(oneLine("caf\xE9 \xED\xA0\x80!"), "caf\\xe9 \\xed\\xa0\\x80!");
}

TEST(OneLineTest, ExcerptCutsBetweenCharacters) {
    EXPECT_EQ(excerpt("日本語テキスト", 3), "日本語...");
    EXPECT_EQ(excerpt("日本語", 3), "日本語");
    EXPECT_EQ(excerpt("a\n\n\n", 2), "a\\n...");
    EXPECT_EQ(excerpt(std::string(1000000, 'x'), 5), "xxxxx...");
}

} // namespace
} // namespace hollowfernpike::test
