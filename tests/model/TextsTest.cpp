#include "model/OneLine.h"

#include "model/json/Utf8.h"

#include <string>

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

constexpr auto allValid = std::string_view::npos;

/// UTF-8 by its plain definition, also for values that have no valid form.
std::string encoded(std::uint32_t value) {
    const auto byte = [](std::uint32_t bits) { return static_cast<char>(bits); };
    const auto trail = [&](unsigned shift) { return byte(0x80 | ((value >> shift) & 0x3F)); };
    if (value < 0x80) {
        return {byte(value)};
    }
    if (value < 0x800) {
        return {byte(0xC0 | value >> 6), trail(0)};
    }
    if (value < 0x10000) {
        return {byte(0xE0 | value >> 12), trail(6), trail(0)};
    }
    return {byte(0xF0 | value >> 18), trail(12), trail(6), trail(0)};
}

bool isScalar(std::uint32_t value) {
    return value < 0xD800 || (value > 0xDFFF && value < 0x110000);
}

TEST(Utf8Test, AcceptsEveryCodePointAndNoSurrogate) {
    for (std::uint32_t value = 0; value < 0x120000; ++value) {
        const auto text = encoded(value);
        ASSERT_EQ(utf8SequenceLength(text), isScalar(value) ? text.size() : 0) << value;
        ASSERT_EQ(firstInvalidUtf8(text), isScalar(value) ? allValid : 0) << value;
    }
}

TEST(Utf8Test, RefusesOverlongForms) {
    for (const std::string text :
         {"\xC0\x80", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x9F\xBF", "\xF0\x80\x80\xAF",
          "\xF0\x8F\xBF\xBF", "\xF8\x88\x80\x80\x80", "\xFC\x84\x80\x80\x80\x80"}) {
        EXPECT_EQ(firstInvalidUtf8(text), 0U);
    }
}

TEST(Utf8Test, RefusesStrayAndMissingTrailBytes) {
    EXPECT_EQ(firstInvalidUtf8("ab\x80"), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xC3"), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xC3 c"), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xE3\x81"), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xE3\x81 "), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xF0\x9F\x98"), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xF0\x9F\x98 "), 2U);
    EXPECT_EQ(firstInvalidUtf8("ab\xFE\xFF"), 2U);
}

TEST(Utf8Test, FindsABadByteWhereverItStands) {
    for (std::size_t position = 0; position < 40; ++position) {
        std::string text(40, 'a');
        text[position] = '\xFF';
        EXPECT_EQ(firstInvalidUtf8(text), position);
    }
}

TEST(Utf8Test, AcceptsTextWithoutBadBytes) {
    EXPECT_EQ(firstInvalidUtf8(""), allValid);
    EXPECT_EQ(utf8SequenceLength(""), 0U);
    EXPECT_EQ(firstInvalidUtf8("plain text and 日本語, then 😀 and plain text again"), allValid);
}

TEST(OneLineTest, DirectionsOfWritingBecomeEscapesInNames) {
    // In single bytes: as texts they would turn this source around.
    const std::string override{'\xE2', '\x80', '\xAE'};
    const std::string isolate{'\xE2', '\x81', '\xA6'};
    const std::string endOfIsolate{'\xE2', '\x81', '\xA9'};
    const std::string mark{'\xE2', '\x80', '\x8F'};
    EXPECT_EQ(withoutDirections(override + "gpj.exe"), "\\u202egpj.exe");
    EXPECT_EQ(withoutDirections("a" + isolate + "b" + endOfIsolate + " " + mark),
              "a\\u2066b\\u2069 \\u200f");
    for (const auto* name : {"", "メール & Ü", "שלום", "\xff broken", "e\u0301"}) {
        EXPECT_EQ(withoutDirections(name), name);
    }
}

} // namespace
} // namespace hollowfernpike::test
