#include "model/document/ShortcutEncoder.h"

#include "model/Shortcuts.h"
#include "model/document/ShortcutDecoder.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace hollowfernpike::test {
namespace {

const std::vector<AppShortcut> twoShortcuts{
    {.id = *UUID::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"),
     .keyCode = 0,
     .modifierFlags = 1179648,
     .appPath = "/Applications/Name.app",
     .appName = "Name",
     .appBundleIdentifier = "org.example.Name"},
    {.id = UUID{},
     .keyCode = 65535,
     .modifierFlags = 18446744073709551615U,
     .appPath = "",
     .appName = "",
     .appBundleIdentifier = ""},
};

std::string compact(const std::vector<AppShortcut>& shortcuts) {
    return encodeShortcuts(shortcuts, DocumentLayout::compact);
}

std::string pretty(const std::vector<AppShortcut>& shortcuts) {
    return encodeShortcuts(shortcuts, DocumentLayout::pretty);
}

/// The document's bytes between the quotes of the name of a record with this name.
std::string encodedName(const std::string& name) {
    auto shortcut = makeShortcut(1, 0, command);
    shortcut.appName = name;
    const auto document = compact({shortcut});
    const std::string before = R"("appName":")";
    const auto start = document.find(before) + before.size();
    return document.substr(start, document.find(R"(","appBundleIdentifier")") - start);
}

TEST(CompactLayoutTest, EmptyList) {
    EXPECT_EQ(compact({}), "[]");
}

TEST(CompactLayoutTest, KeysInEncodingOrderAndNothingBetweenTokens) {
    EXPECT_EQ(compact(twoShortcuts),
              R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","keyCode":0,)"
              R"("modifierFlags":1179648,"appPath":"\/Applications\/Name.app",)"
              R"("appName":"Name","appBundleIdentifier":"org.example.Name"},)"
              R"({"id":"00000000-0000-0000-0000-000000000000","keyCode":65535,)"
              R"("modifierFlags":18446744073709551615,"appPath":"",)"
              R"("appName":"","appBundleIdentifier":""}])");
}

TEST(PrettyLayoutTest, EmptyList) {
    EXPECT_EQ(pretty({}), "[\n\n]");
}

TEST(PrettyLayoutTest, SortedKeysOnLinesOfTheirOwn) {
    EXPECT_EQ(pretty(twoShortcuts), R"([
  {
    "appBundleIdentifier" : "org.example.Name",
    "appName" : "Name",
    "appPath" : "\/Applications\/Name.app",
    "id" : "E621E1F8-C36C-495A-93FC-0C247A3E6E5F",
    "keyCode" : 0,
    "modifierFlags" : 1179648
  },
  {
    "appBundleIdentifier" : "",
    "appName" : "",
    "appPath" : "",
    "id" : "00000000-0000-0000-0000-000000000000",
    "keyCode" : 65535,
    "modifierFlags" : 18446744073709551615
  }
])");
}

TEST(EncodedTextTest, QuotesBackslashesAndSlashes) {
    EXPECT_EQ(encodedName(R"(a"b\c/d)"), R"(a\"b\\c\/d)");
    EXPECT_EQ(encodedName("\"\"\\\\//"), R"(\"\"\\\\\/\/)");
}

TEST(EncodedTextTest, ControlCharacters) {
    EXPECT_EQ(encodedName("\b\t\n\f\r"), R"(\b\t\n\f\r)");
    EXPECT_EQ(encodedName(std::string("\0\x01\x0B\x1B\x1F", 5)),
              R"(\u0000\u0001\u000b\u001b\u001f)");
    EXPECT_EQ(encodedName(" \x7F"), " \x7F");
}

TEST(EncodedTextTest, NonAsciiStandsAsItIs) {
    EXPECT_EQ(encodedName("テキストエディタ é"),
              "\xE3\x83\x86\xE3\x82\xAD\xE3\x82\xB9\xE3\x83\x88\xE3\x82\xA8\xE3\x83\x87\xE3\x82\xA3"
              "\xE3\x82\xBF \xC3\xA9");
    EXPECT_EQ(encodedName("\u0080\u2028\u2029\uFEFF\uFFFF"), "\u0080\u2028\u2029\uFEFF\uFFFF");
}

TEST(EncodedTextTest, CharactersOutsideTheBasicPlane) {
    EXPECT_EQ(encodedName("😀\U0010FFFF"), "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
}

TEST(EncodedTextTest, EveryByteValueThatIsAsciiSurvivesAnotherReader) {
    for (int value = 0; value < 0x80; ++value) {
        auto shortcut = makeShortcut(1, 0, command);
        shortcut.appName = std::string("a") + static_cast<char>(value) + "b";
        for (const auto& document : {compact({shortcut}), pretty({shortcut})}) {
            EXPECT_EQ(nlohmann::json::parse(document)[0]["appName"], shortcut.appName) << value;
        }
    }
}

TEST(EncodedTextTest, TextThatIsNotUtf8IsRefusedByPlaceAndKey) {
    auto second = makeShortcut(2, 1, command);
    second.appPath = "/Applications/caf\xE9\n.app";
    try {
        compact({makeShortcut(1, 0, command), second});
        FAIL() << "encoded text that is not UTF-8";
    } catch (const EncodingError& error) {
        EXPECT_EQ(error.english(),
                  "Element 2 of the list (counted from 1), key \"appPath\": cannot write a text "
                  "that is not UTF-8: \"/Applications/caf\\xe9\\n.app\"");
        EXPECT_EQ(error.japanese(),
                  "一覧の2番目の要素（1から数えて）のキー \"appPath\": "
                  "UTF-8ではない文字列は書き込めません: \"/Applications/caf\\xe9\\n.app\"");
    }
}

TEST(EncodedTextTest, EveryTextOfARecordIsChecked) {
    for (const auto field :
         {&AppShortcut::appPath, &AppShortcut::appName, &AppShortcut::appBundleIdentifier}) {
        auto shortcut = makeShortcut(1, 0, command);
        shortcut.*field = "\xC0\xAF";
        EXPECT_THROW(compact({shortcut}), EncodingError);
        EXPECT_THROW(pretty({shortcut}), EncodingError);
    }
}

TEST(RoundTripTest, BothLayoutsReadBackToTheSameRecords) {
    auto odd = makeShortcut(3, 36, 0x1E0000, "😀 \"quoted\" \\ / \t");
    odd.appPath = std::string("/\0\x1F", 3);
    auto shortcuts = twoShortcuts;
    shortcuts.push_back(odd);
    for (const auto& document : {compact(shortcuts), pretty(shortcuts)}) {
        const auto decoded = decodeShortcuts(document);
        ASSERT_EQ(decoded.size(), shortcuts.size());
        for (std::size_t index = 0; index < decoded.size(); ++index) {
            EXPECT_EQ(fields(decoded[index]), fields(shortcuts[index]));
        }
    }
}

} // namespace
} // namespace hollowfernpike::test
