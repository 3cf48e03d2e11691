#include "model/document/Documents.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

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
