#include "model/document/ShortcutDecoder.h"

#include "model/Shortcuts.h"
#include "model/document/Documents.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(DecodeTest, EmptyList) {
    EXPECT_TRUE(decodeShortcuts("[]").empty());
    EXPECT_TRUE(decodeShortcuts("[\n\n]").empty());
    EXPECT_TRUE(decodeShortcuts(" \t\r\n[ ] \n").empty());
}

TEST(DecodeTest, AllFieldsOfARecord) {
    const auto shortcut = decodeOne(record(validMembers()));
    EXPECT_EQ(shortcut.id, UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
    EXPECT_EQ(shortcut.keyCode, 36);
    EXPECT_EQ(shortcut.modifierFlags, 1179648U);
    EXPECT_EQ(shortcut.appPath, "/Applications/Name.app");
    EXPECT_EQ(shortcut.appName, "Name");
    EXPECT_EQ(shortcut.appBundleIdentifier, "org.example.Name");
}

TEST(DecodeTest, ElementsInTheOrderOfTheDocument) {
    const auto shortcuts =
        decodeShortcuts(list(recordWith("keyCode", "3") + ',' + recordWith("keyCode", "1") + ',' +
                             recordWith("keyCode", "2")));
    ASSERT_EQ(shortcuts.size(), 3U);
    EXPECT_EQ(shortcuts[0].keyCode, 3);
    EXPECT_EQ(shortcuts[1].keyCode, 1);
    EXPECT_EQ(shortcuts[2].keyCode, 2);
}

TEST(DecodeTest, KeysInAnyOrderAndIndented) {
    const auto shortcut = decodeOne(R"(
      {
        "modifierFlags" : 1,
        "appName":"N",   "keyCode"   :2,
        "appPath" : "P", "appBundleIdentifier":"B",
        "id" : "e621e1f8-c36c-495a-93fc-0c247a3e6e5f"
      }
    )");
    EXPECT_EQ(fields(shortcut), fields({.id = *UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"),
                                        .keyCode = 2,
                                        .modifierFlags = 1,
                                        .appPath = "P",
                                        .appName = "N",
                                        .appBundleIdentifier = "B"}));
}

TEST(DecodeTest, IdsInLowerCaseAreWrittenBackInUpperCase) {
    const auto shortcut = decodeOne(recordWith("id", R"("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")"));
    EXPECT_EQ(shortcut.id.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
}

TEST(DecodeTest, OtherKeysAreIgnoredWhateverTheyHold) {
    for (const auto* value :
         {R"("x")", "null", "-1.5e300", "true", "[]", "[[],{}]",
          R"({"id":5,"keyCode":null,"appPath":{"id":1}})", R"([{"id":"x"},{"keyCode":70000}])"}) {
        EXPECT_EQ(fields(decodeOne(recordWith("comment", value))),
                  fields(decodeOne(record(validMembers()))))
            << value;
    }
}

TEST(DecodeTest, KeysDifferByCase) {
    EXPECT_EQ(decodeOne(recordWith("Keycode", "null")).keyCode, 36);
}

TEST(DecodeTest, OfAKeyThatOccursTwiceTheLastCounts) {
    const auto twice = [](const std::string& first, const std::string& last) {
        return "{\"keyCode\":" + first + ',' +
               record(validMembers()).substr(1, record(validMembers()).size() - 2) +
               ",\"keyCode\":" + last + '}';
    };
    EXPECT_EQ(decodeOne(twice("70000", "7")).keyCode, 7);
    EXPECT_EQ(decodeOne(twice("null", "8")).keyCode, 8);
    EXPECT_EQ(refusal(list(twice("7", "null"))),
              "Element 1 of the list (counted from 1), key \"keyCode\": not a number but null");
    EXPECT_EQ(refusal(list(twice("7", "[1]"))),
              "Element 1 of the list (counted from 1), key \"keyCode\": not a number but an array");
}

TEST(DecodeTest, KeysMayBeWrittenWithEscapes) {
    auto members = validMembers();
    members.erase("id");
    members[R"(\u0069\u0064)"] = validMembers().at("id");
    EXPECT_EQ(decodeOne(record(members)).id, UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
}

TEST(DecodeTest, AByteOrderMarkIsPassedOver) {
    EXPECT_EQ(decodeShortcuts("\xEF\xBB\xBF" + list(record(validMembers()))).size(), 1U);
}

TEST(DecodeTest, TheSameIdAndCombinationTwiceStandAsTheyAre) {
    EXPECT_EQ(decodeShortcuts(list(record(validMembers()) + ',' + record(validMembers()))).size(),
              2U);
}

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
