#include "model/document/Documents.h"
#include "model/document/ShortcutDecoder.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(SyntaxErrorTest, EmptyDocuments) {
    EXPECT_EQ(refusal(""), "Not valid JSON (line 1, column 1): the document is empty");
    EXPECT_EQ(refusal(" \n "), "Not valid JSON (line 2, column 2): the document is empty");
    EXPECT_EQ(refusal("\xEF\xBB\xBF"), "Not valid JSON (line 1, column 1): the document is empty");
}

TEST(SyntaxErrorTest, NamesLineAndColumn) {
    EXPECT_EQ(refusal("[\n  {\"日本\" : ?}\n]"),
              "Not valid JSON (line 2, column 11): unexpected character");
    EXPECT_EQ(refusal("hello"), "Not valid JSON (line 1, column 1): unexpected character");
}

TEST(SyntaxErrorTest, TextAfterTheEnd) {
    const std::string end = "): there is text after the document's end";
    EXPECT_EQ(refusal("[] x"), "Not valid JSON (line 1, column 4" + end);
    EXPECT_EQ(refusal("[][]"), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal("[]\n]"), "Not valid JSON (line 2, column 1" + end);
    EXPECT_EQ(refusal("[],"), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal(std::string("[]\0", 3)), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal(std::string("[]\0garbage", 10)), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal("[]\xEF\xBB\xBF"), "Not valid JSON (line 1, column 3" + end);
}

TEST(SyntaxErrorTest, EveryTruncationIsRefused) {
    const auto whole = list(recordWith("comment", R"([{"a":[null,true,1.5e3,"日\ud83d\ude00"]}])"));
    ASSERT_EQ(decodeShortcuts(whole).size(), 1U);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(refusal(whole.substr(0, length)).find("Not valid JSON"), 0U) << length;
    }
    EXPECT_EQ(refusal("[\n{"), "Not valid JSON (line 2, column 2): the document ends too early");
}

TEST(SyntaxErrorTest, LaxFormsAreRefused) {
    for (const auto* document : {"[,]", "[1,]", "[1 2]", "['a']", "[{a:1}]", "[{\"a\":1,}]",
                                 "[{\"a\"}]", "[{\"a\" 1}]", "[// x\n]", "[/**/]", "[nul]",
                                 "[True]", "]", "}", "[}", "{]", "[\xC2\xA0]", "[\v]", "[\"a]"}) {
        EXPECT_EQ(refusal(document).find("Not valid JSON"), 0U) << document;
    }
}

TEST(SyntaxErrorTest, ComesBeforeWhatElseIsWrong) {
    EXPECT_EQ(refusal("[{\"id\":5},"),
              "Not valid JSON (line 1, column 11): the document ends too early");
    EXPECT_EQ(refusal("{} x").find("Not valid JSON"), 0U);
}

std::string nested(std::size_t depth, const std::string& opening, const std::string& closing) {
    std::string text;
    text.reserve(depth * (opening.size() + closing.size()));
    for (std::size_t level = 0; level < depth; ++level) {
        text += opening;
    }
    for (std::size_t level = 0; level < depth; ++level) {
        text += closing;
    }
    return text;
}

constexpr std::size_t deep = 1000000;

TEST(DeepNestingTest, AtTheTopIsRefused) {
    EXPECT_EQ(refusal(nested(deep, "[", "]")),
              "Element 1 of the list (counted from 1) is not an object but an array");
}

TEST(DeepNestingTest, UnclosedIsRefused) {
    EXPECT_EQ(refusal(std::string(deep, '[')),
              "Not valid JSON (line 1, column 1000001): the document ends too early");
    EXPECT_EQ(refusal(std::string(deep, '{')),
              "Not valid JSON (line 1, column 2): unexpected character");
    EXPECT_EQ(refusal(nested(deep, "{\"a\":", "")).find("Not valid JSON"), 0U);
}

TEST(DeepNestingTest, UnderAKeyThatIsIgnoredIsIgnored) {
    EXPECT_EQ(decodeOne(recordWith("comment", nested(deep, "[", "]"))).keyCode, 36);
    EXPECT_EQ(
        decodeOne(recordWith("comment", nested(deep, "[{\"id\":", "}]").insert(deep * 7, 1, '1')))
            .keyCode,
        36);
}

TEST(DeepNestingTest, UnderAKeyThatIsReadIsRefused) {
    EXPECT_EQ(refusalOfSecond(recordWith("appPath", nested(deep, "[", "]"))),
              ", key \"appPath\": not a string but an array");
}

} // namespace
} // namespace hollowfernpike::test
