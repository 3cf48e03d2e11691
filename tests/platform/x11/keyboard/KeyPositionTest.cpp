#include "platform/x11/taps/KeyTapTest.h"

#include <utility>

namespace hollowfernpike::test {

namespace {

using Positions = std::vector<std::pair<const char*, std::int64_t>>;

class KeyPositionTest : public KeyTapTest {
protected:
    void expectEach(const Positions& positions) {
        auto tap = makeListenOnlyTap();
        for (const auto& [name, code] : positions) {
            keyboard_.strike({name});
            ASSERT_TRUE(delivered(*tap, 1)) << name;
            ASSERT_EQ(tap->presses.size(), 1U) << name;
            EXPECT_EQ(tap->presses.front().keyCode, code) << name;
            tap->presses.clear();
        }
    }
};

const Positions lettersDigitsAndSigns{
    {"AC01", 0},  {"AC02", 1},  {"AC03", 2},  {"AC04", 3},  {"AC06", 4},  {"AC05", 5},
    {"AB01", 6},  {"AB02", 7},  {"AB03", 8},  {"AB04", 9},  {"AB05", 11}, {"AD01", 12},
    {"AD02", 13}, {"AD03", 14}, {"AD04", 15}, {"AD06", 16}, {"AD05", 17}, {"AE01", 18},
    {"AE02", 19}, {"AE03", 20}, {"AE04", 21}, {"AE06", 22}, {"AE05", 23}, {"AE12", 24},
    {"AE09", 25}, {"AE07", 26}, {"AE11", 27}, {"AE08", 28}, {"AE10", 29}, {"AD12", 30},
    {"AD09", 31}, {"AD07", 32}, {"AD11", 33}, {"AD08", 34}, {"AD10", 35}, {"RTRN", 36},
    {"AC09", 37}, {"AC07", 38}, {"AC11", 39}, {"AC08", 40}, {"AC10", 41}, {"BKSL", 42},
    {"AB08", 43}, {"AB10", 44}, {"AB06", 45}, {"AB07", 46}, {"AB09", 47}, {"TAB", 48},
    {"SPCE", 49}, {"BKSP", 51}, {"ESC", 53},
};
const Positions keypadDigitsFunctionKeysAndArrows{
    {"KP0", 82},   {"KP1", 83},   {"KP2", 84},   {"KP3", 85},   {"KP4", 86},   {"KP5", 87},
    {"KP6", 88},   {"KP7", 89},   {"KP8", 91},   {"KP9", 92},   {"FK01", 122}, {"FK02", 120},
    {"FK03", 99},  {"FK04", 118}, {"FK05", 96},  {"FK06", 97},  {"FK07", 98},  {"FK08", 100},
    {"FK09", 101}, {"FK10", 109}, {"FK11", 103}, {"FK12", 111}, {"FK13", 105}, {"FK14", 107},
    {"FK15", 113}, {"LEFT", 123}, {"RGHT", 124}, {"DOWN", 125}, {"UP", 126},
};
const Positions keysWithoutANameOfTheirOwn{
    {"LSGT", 10},  {"TLDE", 50},  {"KPDL", 65},  {"KPMU", 67},  {"KPAD", 69},  {"NMLK", 71},
    {"KPDV", 75},  {"KPEN", 76},  {"KPSU", 78},  {"KPEQ", 81},  {"AE13", 93},  {"AB11", 94},
    {"I129", 95},  {"JPCM", 95},  {"MUHE", 102}, {"HENK", 104}, {"INS", 114},  {"HOME", 115},
    {"PGUP", 116}, {"DELE", 117}, {"END", 119},  {"PGDN", 121}, {"FK16", 106}, {"FK17", 64},
    {"FK18", 79},  {"FK19", 80},  {"FK20", 90},
};
const Positions keysWithoutACode{
    {"PRSC", 256 + 99},  {"PAUS", 256 + 119}, {"SCLK", 256 + 70},  {"COMP", 256 + 127},
    {"MUTE", 256 + 113}, {"VOL-", 256 + 114}, {"VOL+", 256 + 115}, {"POWR", 256 + 116},
    {"HELP", 256 + 138}, {"FK21", 256 + 191}, {"I148", 256 + 140}, {"I172", 256 + 164},
};

TEST_F(KeyPositionTest, LettersDigitsAndSigns) {
    ASSERT_EQ(lettersDigitsAndSigns.size() + keypadDigitsFunctionKeysAndArrows.size(), 80U);
    expectEach(lettersDigitsAndSigns);
}

TEST_F(KeyPositionTest, KeypadDigitsFunctionKeysAndArrows) {
    expectEach(keypadDigitsFunctionKeysAndArrows);
}

TEST_F(KeyPositionTest, KeysWithoutANameOfTheirOwn) {
    expectEach(keysWithoutANameOfTheirOwn);
}

TEST_F(KeyPositionTest, KeysWithoutACode) {
    expectEach(keysWithoutACode);
}

TEST_F(KeyPositionTest, EveryPositionStaysWithAnotherKeyCodeTable) {
    run({"setxkbmap", "-keycodes", "xfree86+aliases(qwerty)"});
    expectEach(lettersDigitsAndSigns);
}

TEST_F(KeyPositionTest, EveryPositionStaysWithAnotherLayout) {
    for (const auto* layout : {"fr", "ru", "us(dvorak)", "de", "jp"}) {
        SCOPED_TRACE(layout);
        run({"setxkbmap", layout});
        expectEach(lettersDigitsAndSigns);
    }
}

} // namespace

} // namespace hollowfernpike::test
