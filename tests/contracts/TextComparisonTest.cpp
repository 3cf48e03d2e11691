#include "contracts/MakeTextComparison.h"

#include <string_view>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

bool same(std::string_view one, std::string_view other) {
    const auto comparison = makeTextComparison();
    const bool answer = comparison->canonicallyEquivalent(one, other);
    EXPECT_EQ(comparison->canonicallyEquivalent(other, one), answer);
    return answer;
}

TEST(TextComparison, DecomposedTextEqualsPrecomposedText) {
    EXPECT_TRUE(same("Caf\u00E9", "Cafe\u0301"));
    EXPECT_TRUE(same("\u30AC", "\u30AB\u3099"));
    EXPECT_TRUE(same("\uD55C", "\u1112\u1161\u11AB"));
}

TEST(TextComparison, MarksInAnotherOrderAreTheSameText) {
    EXPECT_TRUE(same("q\u0307\u0323", "q\u0323\u0307"));
}

TEST(TextComparison, LooksAloneDoNotMakeTextsEqual) {
    EXPECT_FALSE(same("\uFB01", "fi"));
    EXPECT_FALSE(same("\uFF21", "A"));
    EXPECT_FALSE(same("Caf\u00E9", "Cafe"));
}

TEST(TextComparison, CaseAndSpaceCount) {
    EXPECT_FALSE(same("Files", "files"));
    EXPECT_FALSE(same("Files", "Files "));
    EXPECT_FALSE(same("\u00C9t\u00E9", "\u00E9t\u00E9"));
}

TEST(TextComparison, EmptyTextEqualsOnlyEmptyText) {
    EXPECT_TRUE(same("", std::string_view{}));
    EXPECT_FALSE(same("", "\u00E9"));
    EXPECT_FALSE(same(std::string_view{}, "a"));
}

TEST(TextComparison, InvalidTextEqualsOnlyItself) {
    EXPECT_TRUE(same("\xC3\x28", "\xC3\x28"));
    EXPECT_FALSE(same("\xC3\x28", "\xC3\x29"));
    EXPECT_FALSE(same("e\u0301\xFF", "\u00E9\xFF"));
}

TEST(TextComparison, AZeroByteDoesNotEndTheText) {
    using namespace std::string_view_literals;
    EXPECT_FALSE(same("\u00E9\0a"sv, "\u00E9\0b"sv));
    EXPECT_FALSE(same("\u00E9\0a"sv, "\u00E9"sv));
}

} // namespace

} // namespace hollowfernpike::test
