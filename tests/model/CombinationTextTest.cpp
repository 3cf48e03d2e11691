#include "model/CombinationText.h"

#include "model/AppShortcut.h"
#include "model/KeyNames.h"
#include "platform/LocalizedError.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

using namespace platform::event_flags;
using platform::KeyCombination;

std::string complaintAbout(std::string_view text) {
    try {
        CombinationText::parse(text);
    } catch (const platform::LocalizedError& error) {
        return error.english();
    }
    throw std::logic_error("it was understood: " + std::string{text});
}

TEST(CombinationTextTest, WordsAreReadAsTheyWereWritten) {
    for (std::uint64_t bits = 0; bits < 16; ++bits) {
        for (int code = 0; code <= 0xFFFF; code += code < 512 ? 1 : 97) {
            const KeyCombination combination{static_cast<std::uint16_t>(code), bits * shift};
            const auto words = CombinationText::words(combination);
            ASSERT_EQ(CombinationText::parse(words), combination) << words;
            ASSERT_EQ(words.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                              "0123456789+()"),
                      std::string::npos)
                << words;
        }
    }
}

// Those of the keypad are called as those of the top row.
TEST(CombinationTextTest, SymbolsAreReadAsPeopleSeeThem) {
    constexpr std::uint16_t firstOfKeypad = 82;
    constexpr std::uint16_t lastOfKeypad = 92;
    for (const auto& [code, name] : keyNames) {
        const KeyCombination combination{code, control | option | shift | command};
        const auto text = CombinationText::symbols(combination);
        EXPECT_EQ(text, "⌃⌥⇧⌘" + name);
        const auto read = CombinationText::parse(text);
        EXPECT_EQ(read.modifierFlags, combination.modifierFlags);
        if (code < firstOfKeypad || code > lastOfKeypad) {
            EXPECT_EQ(read.keyCode, code) << text;
        } else {
            EXPECT_LT(read.keyCode, firstOfKeypad) << text;
        }
    }
}

TEST(CombinationTextTest, PeopleWriteModifiersInManyWays) {
    const KeyCombination wanted{40, control | option};
    for (const char* text :
         {"⌃⌥K", "⌥⌃k", "⌃+⌥+K", "⌃ ⌥ K", "Control+Option+K", "ctrl+alt+k", "CTRL + Opt + K",
          " Alt+⌃K ", "ctl+mod1+K", "⌃⌥Key(40)", "Ctrl+Alt+key(40)"}) {
        EXPECT_EQ(CombinationText::parse(text), wanted) << text;
    }
    for (const char* text : {"Super+F9", "cmd+f9", "Command+F9", "Win+F9", "windows+F9", "Meta+F9",
                             "logo+F9", "mod4+F9", "⌘F9"}) {
        EXPECT_EQ(CombinationText::parse(text), (KeyCombination{101, command})) << text;
    }
}

TEST(CombinationTextTest, KeysHaveNamesInLettersToo) {
    const std::vector<std::pair<const char*, std::uint16_t>> names{
        {"Left", 123},   {"←", 123},        {"enter", 36},  {"Return", 36},
        {"Esc", 53},     {"Backspace", 51}, {"Delete", 51}, {"Home", 115},
        {"PageUp", 116}, {"Insert", 114},   {"Space", 49},  {"F13", 105}};
    for (const auto& [name, code] : names) {
        EXPECT_EQ(CombinationText::parse(std::string{"Shift+"} + name),
                  (KeyCombination{code, shift}))
            << name;
    }
    EXPECT_EQ(CombinationText::parse("F9"), (KeyCombination{101, 0}));
    EXPECT_EQ(CombinationText::parse("Ctrl+-"), (KeyCombination{27, control}));
}

TEST(CombinationTextTest, ComplaintsSayWhatAndWhere) {
    EXPECT_EQ(complaintAbout(""), "\"\", character 1: the key is missing");
    EXPECT_EQ(complaintAbout("Ctrl+"), "\"Ctrl+\", character 6: the key is missing");
    EXPECT_EQ(complaintAbout("⌃⌥"), "\"⌃⌥\", character 3: the key is missing");
    EXPECT_EQ(complaintAbout("Ctrl+Alt"), "\"Ctrl+Alt\", character 6: the key is missing");
    EXPECT_EQ(complaintAbout("⌃⌥Qq"), "\"⌃⌥Qq\", character 3: there is no key \"Qq\"");
    EXPECT_EQ(complaintAbout("Ctrl+Fn+K"),
              "\"Ctrl+Fn+K\", character 6: there is no modifier \"Fn\"");
    EXPECT_EQ(complaintAbout("Ctrl++"), "\"Ctrl++\", character 6: there is no key \"+\"");
    EXPECT_EQ(complaintAbout("Key(70000)"),
              "\"Key(70000)\", character 1: there is no key \"Key(70000)\"");
    EXPECT_EQ(complaintAbout("Key(-1)"), "\"Key(-1)\", character 1: there is no key \"Key(-1)\"");
    EXPECT_EQ(complaintAbout("Key()"), "\"Key()\", character 1: there is no key \"Key()\"");
    EXPECT_EQ(complaintAbout("K\n"), "\"K\\n\", character 1: there is no key \"K\\n\"");
    try {
        CombinationText::parse("⌃あ");
        FAIL();
    } catch (const platform::LocalizedError& error) {
        EXPECT_EQ(error.japanese(), "「⌃あ」の2文字目: 「あ」というキーはありません");
    }
}

} // namespace
} // namespace hollowfernpike::test
