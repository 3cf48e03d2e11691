#include "model/document/DecodingError.h"
#include "model/document/Documents.h"
#include "model/document/ShortcutDecoder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

class RequiredKeyTest : public testing::TestWithParam<std::string> {};

TEST_P(RequiredKeyTest, MustBeThere) {
    EXPECT_EQ(refusalOfSecond(recordWithout(GetParam())),
              ", key \"" + GetParam() + "\": the key is missing");
}

TEST_P(RequiredKeyTest, MustNotBeNull) {
    const auto description = refusalOfSecond(recordWith(GetParam(), "null"));
    EXPECT_EQ(description.find(", key \"" + GetParam() + "\": not a "), 0U) << description;
    EXPECT_TRUE(description.ends_with(" but null")) << description;
}

TEST_P(RequiredKeyTest, MustHaveItsType) {
    const bool isNumber = GetParam() == "keyCode" || GetParam() == "modifierFlags";
    const std::string start =
        ", key \"" + GetParam() + "\": not a " + (isNumber ? "number" : "string") + " but ";
    EXPECT_EQ(refusalOfSecond(recordWith(GetParam(), "true")), start + "a boolean true");
    EXPECT_EQ(refusalOfSecond(recordWith(GetParam(), "[1]")), start + "an array");
    EXPECT_EQ(refusalOfSecond(recordWith(GetParam(), R"({"id":1})")), start + "an object");
    EXPECT_EQ(refusalOfSecond(recordWith(GetParam(), isNumber ? R"("36")" : "36")),
              start + (isNumber ? R"(a string "36")" : "a number 36"));
}

INSTANTIATE_TEST_SUITE_P(Keys, RequiredKeyTest,
                         testing::Values("id", "keyCode", "modifierFlags", "appPath", "appName",
                                         "appBundleIdentifier"),
                         [](const auto& key) { return key.param; });

TEST(DecodeErrorTest, TheFirstKeyInEncodingOrderIsNamed) {
    const std::vector<std::string> order{"id",      "keyCode", "modifierFlags",
                                         "appPath", "appName", "appBundleIdentifier"};
    auto members = validMembers();
    for (auto key = order.rbegin(); key != order.rend(); ++key) {
        members[*key] = "false";
        const auto description = refusalOfSecond(record(members));
        EXPECT_EQ(description.find(", key \"" + *key + "\": "), 0U) << description;
    }
    EXPECT_EQ(refusalOfSecond("{}"), ", key \"id\": the key is missing");
}

TEST(DecodeErrorTest, TheFirstBadElementIsNamed) {
    EXPECT_EQ(refusal(list("5," + recordWithout("id"))),
              "Element 1 of the list (counted from 1) is not an object but a number 5");
}

TEST(DecodeErrorTest, BadIds) {
    EXPECT_EQ(refusalOfSecond(recordWith("id", R"("abc")")), ", key \"id\": \"abc\" is not a UUID");
    EXPECT_EQ(refusalOfSecond(recordWith("id", R"("")")), ", key \"id\": \"\" is not a UUID");
}

TEST(DecodeErrorTest, QuotedValuesAreCutAndKeptOnOneLine) {
    EXPECT_EQ(refusalOfSecond(recordWith("id", "\"a\\nb" + std::string(100, 'x') + '"')),
              ", key \"id\": \"a\\nb" + std::string(57, 'x') + "...\" is not a UUID");
}

TEST(DecodeErrorTest, ElementsThatAreNoObjects) {
    const std::string start = " is not an object but ";
    EXPECT_EQ(refusalOfSecond("null"), start + "null");
    EXPECT_EQ(refusalOfSecond("false"), start + "a boolean false");
    EXPECT_EQ(refusalOfSecond("\"x\""), start + "a string \"x\"");
    EXPECT_EQ(refusalOfSecond("[]"), start + "an array");
    EXPECT_EQ(refusalOfSecond(list(record(validMembers()))), start + "an array");
}

TEST(DecodeErrorTest, TopLevelsThatAreNoList) {
    const std::string start =
        "The top level of the document is not an array (the list of shortcuts) but ";
    EXPECT_EQ(refusal(record(validMembers())), start + "an object");
    EXPECT_EQ(refusal("null"), start + "null");
    EXPECT_EQ(refusal("7"), start + "a number 7");
    EXPECT_EQ(refusal("\"[]\""), start + "a string \"[]\"");
    EXPECT_EQ(refusal("true"), start + "a boolean true");
    EXPECT_EQ(refusal(R"({"shortcuts":[{"id":1}]})"), start + "an object");
}

TEST(DecodeErrorTest, DescribedInJapaneseToo) {
    const auto japanese = [](const std::string& document) -> std::string {
        try {
            decodeShortcuts(document);
            return "accepted";
        } catch (const DecodingError& error) {
            return error.japanese();
        }
    };
    const std::string first = "一覧の1番目の要素（1から数えて）";
    EXPECT_EQ(japanese(list(recordWith("keyCode", "70000"))),
              first + "のキー \"keyCode\": 70000 は範囲外です（0〜65535）");
    EXPECT_EQ(japanese(list(recordWith("keyCode", "1.5"))),
              first + "のキー \"keyCode\": 1.5 は整数ではありません");
    EXPECT_EQ(japanese(list(recordWith("keyCode", "\"1\""))),
              first + "のキー \"keyCode\": 数値ではなく、文字列 \"1\" です");
    EXPECT_EQ(japanese(list(recordWith("id", "\"x\""))),
              first + "のキー \"id\": \"x\" はUUIDではありません");
    EXPECT_EQ(japanese(list(recordWithout("appName"))),
              first + "のキー \"appName\": キーがありません");
    EXPECT_EQ(japanese("[true]"), first + "がオブジェクトではなく、真偽値 true です");
    EXPECT_EQ(japanese("null"), "文書の最上位が配列（ショートカットの一覧）ではなく、null です");
    EXPECT_EQ(japanese("[]x"), "JSONとして正しくありません（1行目3文字目）: "
                               "文書の終わりの後に余分な文字があります");
}

} // namespace
} // namespace hollowfernpike::test
