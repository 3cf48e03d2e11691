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

} // namespace
} // namespace hollowfernpike::test
