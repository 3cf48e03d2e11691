#include "model/ShortcutDecoder.h"

#include "model/DecodingError.h"
#include "model/Shortcuts.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

/// The members of a valid record as JSON texts, by key.
using Members = std::map<std::string, std::string>;

const Members validMembers{
    {"id", R"("E621E1F8-C36C-495A-93FC-0C247A3E6E5F")"},
    {"keyCode", "36"},
    {"modifierFlags", "1179648"},
    {"appPath", R"("\/Applications\/Name.app")"},
    {"appName", R"("Name")"},
    {"appBundleIdentifier", R"("org.example.Name")"},
};

std::string record(const Members& members) {
    std::string text;
    for (const auto& [key, value] : members) {
        text.append(text.empty() ? "{\"" : ",\"").append(key).append("\":").append(value);
    }
    return text + '}';
}

std::string recordWith(const std::string& key, const std::string& value) {
    auto members = validMembers;
    members[key] = value;
    return record(members);
}

std::string recordWithout(const std::string& key) {
    auto members = validMembers;
    members.erase(key);
    return record(members);
}

std::string list(const std::string& elements) {
    return '[' + elements + ']';
}

AppShortcut decodeOne(const std::string& element) {
    const auto shortcuts = decodeShortcuts(list(element));
    EXPECT_EQ(shortcuts.size(), 1U);
    return shortcuts.at(0);
}

/// The description of the refusal, or "accepted".
std::string refusal(const std::string& document) {
    try {
        decodeShortcuts(document);
        return "accepted";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.japanese().find('\n'), std::string::npos);
        EXPECT_EQ(error.english().find('\n'), std::string::npos);
        return error.english();
    }
}

std::string refusalOfSecond(const std::string& element) {
    const auto text = refusal(list(record(validMembers) + ',' + element));
    const std::string start = "Element 2 of the list (counted from 1)";
    EXPECT_EQ(text.substr(0, start.size()), start);
    return text.substr(std::min(start.size(), text.size()));
}

// --- what is read ---

TEST(DecodeTest, emptyList) {
    EXPECT_TRUE(decodeShortcuts("[]").empty());
    EXPECT_TRUE(decodeShortcuts("[\n\n]").empty());
    EXPECT_TRUE(decodeShortcuts(" \t\r\n[ ] \n").empty());
}

TEST(DecodeTest, allFieldsOfARecord) {
    const auto shortcut = decodeOne(record(validMembers));
    EXPECT_EQ(shortcut.id, UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
    EXPECT_EQ(shortcut.keyCode, 36);
    EXPECT_EQ(shortcut.modifierFlags, 1179648U);
    EXPECT_EQ(shortcut.appPath, "/Applications/Name.app");
    EXPECT_EQ(shortcut.appName, "Name");
    EXPECT_EQ(shortcut.appBundleIdentifier, "org.example.Name");
}

TEST(DecodeTest, elementsInTheOrderOfTheDocument) {
    const auto shortcuts =
        decodeShortcuts(list(recordWith("keyCode", "3") + ',' + recordWith("keyCode", "1") + ',' +
                             recordWith("keyCode", "2")));
    ASSERT_EQ(shortcuts.size(), 3U);
    EXPECT_EQ(shortcuts[0].keyCode, 3);
    EXPECT_EQ(shortcuts[1].keyCode, 1);
    EXPECT_EQ(shortcuts[2].keyCode, 2);
}

TEST(DecodeTest, keysInAnyOrderAndIndented) {
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

TEST(DecodeTest, idsInLowerCaseAreWrittenBackInUpperCase) {
    const auto shortcut = decodeOne(recordWith("id", R"("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")"));
    EXPECT_EQ(shortcut.id.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
}

TEST(DecodeTest, otherKeysAreIgnoredWhateverTheyHold) {
    for (const auto* value :
         {R"("x")", "null", "-1.5e300", "true", "[]", "[[],{}]",
          R"({"id":5,"keyCode":null,"appPath":{"id":1}})", R"([{"id":"x"},{"keyCode":70000}])"}) {
        EXPECT_EQ(fields(decodeOne(recordWith("comment", value))),
                  fields(decodeOne(record(validMembers))))
            << value;
    }
}

TEST(DecodeTest, keysDifferByCase) {
    EXPECT_EQ(decodeOne(recordWith("Keycode", "null")).keyCode, 36);
}

TEST(DecodeTest, ofAKeyThatOccursTwiceTheLastCounts) {
    const auto twice = [](const std::string& first, const std::string& last) {
        return "{\"keyCode\":" + first + ',' +
               record(validMembers).substr(1, record(validMembers).size() - 2) +
               ",\"keyCode\":" + last + '}';
    };
    EXPECT_EQ(decodeOne(twice("70000", "7")).keyCode, 7);
    EXPECT_EQ(decodeOne(twice("null", "8")).keyCode, 8);
    EXPECT_EQ(refusal(list(twice("7", "null"))),
              "Element 1 of the list (counted from 1), key \"keyCode\": not a number but null");
    EXPECT_EQ(refusal(list(twice("7", "[1]"))),
              "Element 1 of the list (counted from 1), key \"keyCode\": not a number but an array");
}

TEST(DecodeTest, keysMayBeWrittenWithEscapes) {
    auto members = validMembers;
    members.erase("id");
    members[R"(\u0069\u0064)"] = validMembers.at("id");
    EXPECT_EQ(decodeOne(record(members)).id, UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
}

TEST(DecodeTest, aByteOrderMarkIsPassedOver) {
    EXPECT_EQ(decodeShortcuts("\xEF\xBB\xBF" + list(record(validMembers))).size(), 1U);
}

TEST(DecodeTest, theSameIdAndCombinationTwiceStandAsTheyAre) {
    EXPECT_EQ(decodeShortcuts(list(record(validMembers) + ',' + record(validMembers))).size(), 2U);
}

// --- texts ---

std::string decodedName(const std::string& json) {
    return decodeOne(recordWith("appName", '"' + json + '"')).appName;
}

TEST(DecodeTextTest, everyEscape) {
    EXPECT_EQ(decodedName(R"(\"\\\/\b\f\n\r\t)"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(decodedName(R"(\u0041\u00e9\u3042\u3042)"), "Aéああ");
    EXPECT_EQ(decodedName(R"(\ud83d\ude00\uDBFF\uDFFF)"), "😀\U0010FFFF");
    EXPECT_EQ(decodedName(R"(a\u0000b)"), std::string("a\0b", 3));
}

TEST(DecodeTextTest, nonAsciiAndSlashesAsTheyStand) {
    EXPECT_EQ(decodedName("テキスト/é/😀/\x7F"), "テキスト/é/😀/\x7F");
}

TEST(DecodeTextTest, emptyTextsAreTexts) {
    EXPECT_EQ(decodedName(""), "");
}

TEST(DecodeTextTest, longTexts) {
    const std::string text(1 << 20, 'x');
    EXPECT_EQ(decodedName(text), text);
}

TEST(DecodeTextTest, badEscapesAreRefused) {
    for (const auto* text : {R"(\x)", R"(\u12)", R"(\u12G4)", R"(\')", "\\", R"(\U0041)"}) {
        EXPECT_EQ(refusal(list(recordWith("appName", std::string{'"'} + text + '"')))
                      .find("Not valid JSON"),
                  0U)
            << text;
    }
}

TEST(DecodeTextTest, halfASurrogatePairIsRefused) {
    for (const auto* text : {R"(\ud83d)", R"(\ud83dx)", R"(\ud83d\n)", R"(\ud83d\u0041)",
                             R"(\ud83d\ud83d)", R"(\ude00)", R"(a\udfffb)", R"(\ude00\ud83d)"}) {
        for (const auto& element :
             {recordWith("appName", std::string{'"'} + text + '"'),
              recordWith("comment", std::string{'"'} + text + '"'), recordWith(text, "1")}) {
            const auto description = refusal(list(element));
            EXPECT_NE(description.find("half of a surrogate pair"), std::string::npos)
                << text << ": " << description;
        }
    }
}

TEST(DecodeTextTest, bareControlCharactersAreRefused) {
    for (char control = 0; control < 0x20; ++control) {
        const auto document = list(recordWith("appName", std::string{'"', control, '"'}));
        EXPECT_EQ(refusal(document).find("Not valid JSON"), 0U) << static_cast<int>(control);
    }
}

TEST(DecodeTextTest, textThatIsNotUtf8IsRefusedWhereItStands) {
    for (const std::string bytes :
         {"\xFF", "\xC3", "\x80", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_EQ(refusal("[\n{\"appName\":\"日本" + bytes + "\"}]"),
                  "Not valid JSON (line 2, column 15): there is a byte that is not UTF-8");
        EXPECT_EQ(refusal("[{\"" + bytes + "\":1}]"),
                  "Not valid JSON (line 1, column 4): there is a byte that is not UTF-8");
        EXPECT_EQ(refusal("[" + bytes + "]"),
                  "Not valid JSON (line 1, column 2): there is a byte that is not UTF-8");
    }
}

TEST(DecodeTextTest, documentsInOtherEncodingsAreRefused) {
    EXPECT_EQ(refusal(std::string("\xFF\xFE[\0]\0", 6)),
              "Not valid JSON (line 1, column 1): there is a byte that is not UTF-8");
    EXPECT_EQ(refusal(std::string("[\0]\0", 4)).find("Not valid JSON"), 0U);
    EXPECT_EQ(refusal(std::string("\0[\0]", 4)).find("Not valid JSON"), 0U);
}

// --- numbers ---

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

// --- what does not fit ---

class RequiredKeyTest : public testing::TestWithParam<std::string> {};

TEST_P(RequiredKeyTest, mustBeThere) {
    EXPECT_EQ(refusalOfSecond(recordWithout(GetParam())),
              ", key \"" + GetParam() + "\": the key is missing");
}

TEST_P(RequiredKeyTest, mustNotBeNull) {
    const auto description = refusalOfSecond(recordWith(GetParam(), "null"));
    EXPECT_EQ(description.find(", key \"" + GetParam() + "\": not a "), 0U) << description;
    EXPECT_TRUE(description.ends_with(" but null")) << description;
}

TEST_P(RequiredKeyTest, mustHaveItsType) {
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

TEST(DecodeErrorTest, theFirstKeyInEncodingOrderIsNamed) {
    const std::vector<std::string> order{"id",      "keyCode", "modifierFlags",
                                         "appPath", "appName", "appBundleIdentifier"};
    auto members = validMembers;
    for (auto key = order.rbegin(); key != order.rend(); ++key) {
        members[*key] = "false";
        const auto description = refusalOfSecond(record(members));
        EXPECT_EQ(description.find(", key \"" + *key + "\": "), 0U) << description;
    }
    EXPECT_EQ(refusalOfSecond("{}"), ", key \"id\": the key is missing");
}

TEST(DecodeErrorTest, theFirstBadElementIsNamed) {
    EXPECT_EQ(refusal(list("5," + recordWithout("id"))),
              "Element 1 of the list (counted from 1) is not an object but a number 5");
}

TEST(DecodeErrorTest, badIds) {
    EXPECT_EQ(refusalOfSecond(recordWith("id", R"("abc")")), ", key \"id\": \"abc\" is not a UUID");
    EXPECT_EQ(refusalOfSecond(recordWith("id", R"("")")), ", key \"id\": \"\" is not a UUID");
}

TEST(DecodeErrorTest, quotedValuesAreCutAndKeptOnOneLine) {
    EXPECT_EQ(refusalOfSecond(recordWith("id", "\"a\\nb" + std::string(100, 'x') + '"')),
              ", key \"id\": \"a\\nb" + std::string(57, 'x') + "...\" is not a UUID");
}

TEST(DecodeErrorTest, elementsThatAreNoObjects) {
    const std::string start = " is not an object but ";
    EXPECT_EQ(refusalOfSecond("null"), start + "null");
    EXPECT_EQ(refusalOfSecond("false"), start + "a boolean false");
    EXPECT_EQ(refusalOfSecond("\"x\""), start + "a string \"x\"");
    EXPECT_EQ(refusalOfSecond("[]"), start + "an array");
    EXPECT_EQ(refusalOfSecond(list(record(validMembers))), start + "an array");
}

TEST(DecodeErrorTest, topLevelsThatAreNoList) {
    const std::string start =
        "The top level of the document is not an array (the list of shortcuts) but ";
    EXPECT_EQ(refusal(record(validMembers)), start + "an object");
    EXPECT_EQ(refusal("null"), start + "null");
    EXPECT_EQ(refusal("7"), start + "a number 7");
    EXPECT_EQ(refusal("\"[]\""), start + "a string \"[]\"");
    EXPECT_EQ(refusal("true"), start + "a boolean true");
    EXPECT_EQ(refusal(R"({"shortcuts":[{"id":1}]})"), start + "an object");
}

TEST(DecodeErrorTest, describedInJapaneseToo) {
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

// --- what is not JSON ---

TEST(SyntaxErrorTest, emptyDocuments) {
    EXPECT_EQ(refusal(""), "Not valid JSON (line 1, column 1): the document is empty");
    EXPECT_EQ(refusal(" \n "), "Not valid JSON (line 2, column 2): the document is empty");
    EXPECT_EQ(refusal("\xEF\xBB\xBF"), "Not valid JSON (line 1, column 1): the document is empty");
}

TEST(SyntaxErrorTest, namesLineAndColumn) {
    EXPECT_EQ(refusal("[\n  {\"日本\" : ?}\n]"),
              "Not valid JSON (line 2, column 11): unexpected character");
    EXPECT_EQ(refusal("hello"), "Not valid JSON (line 1, column 1): unexpected character");
}

TEST(SyntaxErrorTest, textAfterTheEnd) {
    const std::string end = "): there is text after the document's end";
    EXPECT_EQ(refusal("[] x"), "Not valid JSON (line 1, column 4" + end);
    EXPECT_EQ(refusal("[][]"), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal("[]\n]"), "Not valid JSON (line 2, column 1" + end);
    EXPECT_EQ(refusal("[],"), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal(std::string("[]\0", 3)), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal(std::string("[]\0garbage", 10)), "Not valid JSON (line 1, column 3" + end);
    EXPECT_EQ(refusal("[]\xEF\xBB\xBF"), "Not valid JSON (line 1, column 3" + end);
}

TEST(SyntaxErrorTest, everyTruncationIsRefused) {
    const auto whole = list(recordWith("comment", R"([{"a":[null,true,1.5e3,"日\ud83d\ude00"]}])"));
    ASSERT_EQ(decodeShortcuts(whole).size(), 1U);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(refusal(whole.substr(0, length)).find("Not valid JSON"), 0U) << length;
    }
    EXPECT_EQ(refusal("[\n{"), "Not valid JSON (line 2, column 2): the document ends too early");
}

TEST(SyntaxErrorTest, laxFormsAreRefused) {
    for (const auto* document : {"[,]", "[1,]", "[1 2]", "['a']", "[{a:1}]", "[{\"a\":1,}]",
                                 "[{\"a\"}]", "[{\"a\" 1}]", "[// x\n]", "[/**/]", "[nul]",
                                 "[True]", "]", "}", "[}", "{]", "[\xC2\xA0]", "[\v]", "[\"a]"}) {
        EXPECT_EQ(refusal(document).find("Not valid JSON"), 0U) << document;
    }
}

TEST(SyntaxErrorTest, comesBeforeWhatElseIsWrong) {
    EXPECT_EQ(refusal("[{\"id\":5},"),
              "Not valid JSON (line 1, column 11): the document ends too early");
    EXPECT_EQ(refusal("{} x").find("Not valid JSON"), 0U);
}

// --- nesting ---

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

TEST(DeepNestingTest, atTheTopIsRefused) {
    EXPECT_EQ(refusal(nested(deep, "[", "]")),
              "Element 1 of the list (counted from 1) is not an object but an array");
}

TEST(DeepNestingTest, unclosedIsRefused) {
    EXPECT_EQ(refusal(std::string(deep, '[')),
              "Not valid JSON (line 1, column 1000001): the document ends too early");
    EXPECT_EQ(refusal(std::string(deep, '{')),
              "Not valid JSON (line 1, column 2): unexpected character");
    EXPECT_EQ(refusal(nested(deep, "{\"a\":", "")).find("Not valid JSON"), 0U);
}

TEST(DeepNestingTest, underAKeyThatIsIgnoredIsIgnored) {
    EXPECT_EQ(decodeOne(recordWith("comment", nested(deep, "[", "]"))).keyCode, 36);
    EXPECT_EQ(
        decodeOne(recordWith("comment", nested(deep, "[{\"id\":", "}]").insert(deep * 7, "1")))
            .keyCode,
        36);
}

TEST(DeepNestingTest, underAKeyThatIsReadIsRefused) {
    EXPECT_EQ(refusalOfSecond(recordWith("appPath", nested(deep, "[", "]"))),
              ", key \"appPath\": not a string but an array");
}

} // namespace
} // namespace hollowfernpike::test
