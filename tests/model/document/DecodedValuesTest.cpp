#include "model/document/Documents.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

using namespace std::string_literals;

TEST(DecodeNumberTest, KeyCodesFrom0To65535) {
    EXPECT_EQ(decodeOne(recordWith("keyCode", "0")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "-0")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "65535")).keyCode, 65535);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "1e2")).keyCode, 100);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "100.0")).keyCode, 100);
}

TEST(DecodeNumberTest, FlagWordsOf64BitsExactly) {
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "18446744073709551615")).modifierFlags,
              18446744073709551615U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "9007199254740993")).modifierFlags,
              9007199254740993U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "1.8446744073709551615e19")).modifierFlags,
              18446744073709551615U);
    EXPECT_EQ(decodeOne(recordWith("modifierFlags", "0")).modifierFlags, 0U);
}

TEST(DecodeNumberTest, OutOfRange) {
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

TEST(DecodeNumberTest, Fractions) {
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "1.5")),
              ", key \"keyCode\": 1.5 is not an integer");
    EXPECT_EQ(refusalOfSecond(recordWith("modifierFlags", "1e-1")),
              ", key \"modifierFlags\": 1e-1 is not an integer");
}

TEST(DecodeNumberTest, LongNumbersAreCutInTheDescription) {
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", std::string(200, '7'))),
              ", key \"keyCode\": " + std::string(60, '7') + "... is out of range (0 to 65535)");
}

TEST(DecodeNumberTest, FormsThatAreNoJsonNumbersAreRefused) {
    for (const auto* text :
         {"+1", "01", ".5", "1.", "1e", "0x10", "NaN", "Infinity", "-", "1_000", "\xEF\xBC\x91"}) {
        EXPECT_EQ(refusal(list(recordWith("keyCode", text))).find("Not valid JSON"), 0U) << text;
    }
}

const std::string longInteger(400, '9');
const std::string zeros(400, '0');

/// Numbers that no double holds, or that are written in more digits than one needs.
const std::vector<std::string> hugeNumbers{
    "1e400",   "-1e400",     "1E+99999999999999999999", "1e-99999999999999999999", "0e400",
    "0.5e400", longInteger,  '-' + longInteger,         longInteger + ".5e-7",     "1" + zeros,
    "10e309",  "0." + zeros, "1." + zeros + "e400",
};

/// The number in an array, in an object within it, and after a string with an escaped quote.
std::string threeTimes(const std::string& number) {
    std::string text = "[";
    text.append(number).append(R"(, {"id": )").append(number).append(R"(}, "1e400\"", )");
    return text.append(number).append("]");
}

TEST(DecodeNumberTest, NumbersOfAnySizeUnderIgnoredKeysAreIgnored) {
    for (const auto& number : hugeNumbers) {
        for (const auto& value : {number, threeTimes(number)}) {
            EXPECT_EQ(decodeOne(recordWith("comment", value)).modifierFlags, 1179648U) << value;
        }
    }
}

TEST(DecodeNumberTest, NumbersBesideHugeOnesAreReadExactly) {
    auto members = validMembers();
    members["a"] = "1e400";
    members["appPath"] = R"("\"1e400, -1e400\\")";
    members["keyCode"] = "6.5535e4";
    members["modifierFlags"] = "18446744073709551615";
    members["z"] = longInteger;
    const auto shortcut = decodeOne(record(members));
    EXPECT_EQ(shortcut.appPath, R"("1e400, -1e400\)");
    EXPECT_EQ(shortcut.keyCode, 65535);
    EXPECT_EQ(shortcut.modifierFlags, 18446744073709551615U);
}

TEST(DecodeNumberTest, NumbersBeyondADoubleAreJudgedByValue) {
    EXPECT_EQ(decodeOne(recordWith("keyCode", "0e400")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "-0.00e+99999999999999999999")).keyCode, 0);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "65535" + zeros + "e-400")).keyCode, 65535);
    EXPECT_EQ(decodeOne(recordWith("keyCode", "0." + zeros + "7e401")).keyCode, 7);
    EXPECT_EQ(refusalOfSecond(recordWith("keyCode", "1e400")),
              ", key \"keyCode\": 1e400 is out of range (0 to 65535)");
    EXPECT_TRUE(refusalOfSecond(recordWith("keyCode", "65535" + zeros + "e-401"))
                    .ends_with("... is not an integer"));
    EXPECT_EQ(refusal("[\n  1e400]"),
              "Element 1 of the list (counted from 1) is not an object but a number 1e400");
}

TEST(DecodeNumberTest, HugeNumbersDoNotHideWhatIsNoJson) {
    for (const std::string& wrong : {"[1e400, 1-1e400]"s,
                                     "[1e400, -1-1e400]"s,
                                     "[1e400, 12-1234567890123456789012]"s,
                                     "1e400-1e400"s,
                                     "01e400"s,
                                     "-01e400"s,
                                     "1e400.5"s,
                                     "1e400e5"s,
                                     "1e400 5"s,
                                     "1e400-5"s,
                                     "--1e400"s,
                                     "+1e400"s,
                                     "1e400e"s,
                                     "1e400,"s,
                                     ".1e400"s,
                                     "1.e400"s,
                                     '0' + longInteger,
                                     longInteger + '.',
                                     longInteger + ".e5",
                                     longInteger + 'e',
                                     longInteger + "e+",
                                     longInteger + "e5.5",
                                     longInteger + 'x',
                                     R"(1e400, "open)"s,
                                     R"(1e400, "open\)"s}) {
        EXPECT_EQ(refusal(list(recordWith("comment", wrong))).find("Not valid JSON"), 0U) << wrong;
    }
    EXPECT_EQ(refusal("[1e400,\n 1e400, ?]"),
              "Not valid JSON (line 2, column 9): unexpected character");
    EXPECT_EQ(refusal("[1e400"), "Not valid JSON (line 1, column 7): the document ends too early");
}

TEST(DecodeNumberTest, ManyHugeNumbersAreReadInOneGo) {
    std::string many;
    for (int count = 0; count < 200000; ++count) {
        many += "1e400,";
    }
    EXPECT_EQ(decodeOne(recordWith("comment", '[' + many + "0]")).keyCode, 36);
}

std::string decodedName(const std::string& json) {
    return decodeOne(recordWith("appName", '"' + json + '"')).appName;
}

TEST(DecodeTextTest, EveryEscape) {
    EXPECT_EQ(decodedName(R"(\"\\\/\b\f\n\r\t)"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(decodedName(R"(\u0041\u00e9\u3042\u3042)"), "Aéああ");
    EXPECT_EQ(decodedName(R"(\ud83d\ude00\uDBFF\uDFFF)"), "😀\U0010FFFF");
    EXPECT_EQ(decodedName(R"(a\u0000b)"), std::string("a\0b", 3));
}

TEST(DecodeTextTest, NonAsciiAndSlashesAsTheyStand) {
    EXPECT_EQ(decodedName("テキスト/é/😀/\x7F"), "テキスト/é/😀/\x7F");
}

TEST(DecodeTextTest, EmptyTextsAreTexts) {
    EXPECT_EQ(decodedName(""), "");
}

TEST(DecodeTextTest, LongTexts) {
    const std::string text(1 << 20, 'x');
    EXPECT_EQ(decodedName(text), text);
}

TEST(DecodeTextTest, BadEscapesAreRefused) {
    for (const auto* text : {R"(\x)", R"(\u12)", R"(\u12G4)", R"(\')", "\\", R"(\U0041)"}) {
        EXPECT_EQ(refusal(list(recordWith("appName", std::string{'"'} + text + '"')))
                      .find("Not valid JSON"),
                  0U)
            << text;
    }
}

TEST(DecodeTextTest, HalfASurrogatePairIsRefused) {
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

TEST(DecodeTextTest, BareControlCharactersAreRefused) {
    for (char control = 0; control < 0x20; ++control) {
        const auto document = list(recordWith("appName", std::string{'"', control, '"'}));
        EXPECT_EQ(refusal(document).find("Not valid JSON"), 0U) << static_cast<int>(control);
    }
}

TEST(DecodeTextTest, TextThatIsNotUtf8IsRefusedWhereItStands) {
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

TEST(DecodeTextTest, DocumentsInOtherEncodingsAreRefused) {
    EXPECT_EQ(refusal(std::string("\xFF\xFE[\0]\0", 6)),
              "Not valid JSON (line 1, column 1): there is a byte that is not UTF-8");
    EXPECT_EQ(refusal(std::string("[\0]\0", 4)).find("Not valid JSON"), 0U);
    EXPECT_EQ(refusal(std::string("\0[\0]", 4)).find("Not valid JSON"), 0U);
}

} // namespace
} // namespace hollowfernpike::test
