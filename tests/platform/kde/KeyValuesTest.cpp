#include "platform/kde/keys/KeyValues.h"

#include "platform/wayland/CompiledKeymap.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using kde::KeyValues;
using platform::KeyCombination;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using namespace platform::event_flags;
using enum KeyValues::Plasma;

constexpr int ctrl = 0x04000000;
constexpr int alt = 0x08000000;
constexpr int meta = 0x10000000;
constexpr int shifted = 0x02000000;
constexpr int keypad = 0x20000000;

// Keys by their virtual codes, named after what they write on an American keyboard.
constexpr std::uint16_t k = 40;
constexpr std::uint16_t y = 16;
constexpr std::uint16_t one = 18;
constexpr std::uint16_t equalsSign = 24;
constexpr std::uint16_t tab = 48;
constexpr std::uint16_t space = 49;
constexpr std::uint16_t f9 = 101;
constexpr std::uint16_t f14 = 107;
constexpr std::uint16_t fiveOfKeypad = 87;
constexpr std::uint16_t timesOfKeypad = 67;
constexpr std::uint16_t yen = 93;
constexpr std::uint16_t henkan = 104;

QList<int> valuesIn(const char* layouts, const KeyCombination& combination,
                    std::uint32_t layout = 0, KeyValues::Plasma plasma = six) {
    const auto keymap = wayland::Keymap::parse(keymapText(layouts));
    return KeyValues(*keymap, layout, plasma).valuesOf(combination);
}

// What KWin 5.27 and 6.3 were seen to answer, key by key.

TEST(KeyValuesTest, ALetterIsACapitalWithItsModifiers) {
    EXPECT_THAT(valuesIn("us", {k, control | option}), ElementsAre(ctrl | alt | 'K'));
    EXPECT_THAT(valuesIn("us", {k, command}), ElementsAre(meta | 'K'));
    EXPECT_THAT(valuesIn("us", {k, control | shift}), ElementsAre(ctrl | shifted | 'K'));
}

TEST(KeyValuesTest, AShiftedSignStandsWithoutShift) {
    EXPECT_THAT(valuesIn("us", {one, control | shift}), ElementsAre(ctrl | '!'));
    EXPECT_THAT(valuesIn("fr", {one, control | shift}), ElementsAre(ctrl | '1'));
}

TEST(KeyValuesTest, KeysThatShiftDoesNotChangeKeepIt) {
    EXPECT_THAT(valuesIn("us", {f9, shift}), ElementsAre(shifted | Qt::Key_F9));
    EXPECT_THAT(valuesIn("us", {space, shift | control}), ElementsAre(shifted | ctrl | ' '));
    EXPECT_THAT(valuesIn("us", {tab, shift | control}), ElementsAre(shifted | ctrl | Qt::Key_Tab));
}

TEST(KeyValuesTest, AKeyHasTheValueOfTheLayoutInUse) {
    EXPECT_THAT(valuesIn("us,de", {y, option}, 0), ElementsAre(alt | 'Y'));
    EXPECT_THAT(valuesIn("us,de", {y, option}, 1), ElementsAre(alt | 'Z'));
}

TEST(KeyValuesTest, ALetterOfAnotherScriptCountsAsTheLatinOneOnItsKey) {
    EXPECT_THAT(valuesIn("us,ru", {k, option}, 1), ElementsAre(alt | 'K'));
    EXPECT_THAT(valuesIn("ru", {k, option}), ElementsAre(alt | 0x041B)) << "none is known";
}

TEST(KeyValuesTest, JapaneseKeys) {
    EXPECT_THAT(valuesIn("jp", {yen, control}), ElementsAre(ctrl | '\\'));
    EXPECT_THAT(valuesIn("jp", {henkan, control}), ElementsAre(ctrl | Qt::Key_Henkan));
    EXPECT_THAT(valuesIn("us", {yen, control}), IsEmpty()) << "no such key";
}

TEST(KeyValuesTest, TheKeypadCountsInBothStatesOfNumLock) {
    EXPECT_THAT(valuesIn("us", {fiveOfKeypad, option}, 0, six),
                UnorderedElementsAre(keypad | alt | '5', keypad | alt | Qt::Key_Clear));
    EXPECT_THAT(valuesIn("us", {fiveOfKeypad, option}, 0, five),
                UnorderedElementsAre(alt | '5', alt | Qt::Key_Clear));
}

TEST(KeyValuesTest, ModifiersThatChooseTheSymbolAreUsedUp) {
    EXPECT_THAT(valuesIn("us", {timesOfKeypad, control | option}, 0, five),
                ElementsAre(Qt::Key_ClearGrab));
}

TEST(KeyValuesTest, ADeadKeyHasNone) {
    EXPECT_THAT(valuesIn("de", {equalsSign, control}), IsEmpty());
    EXPECT_THAT(valuesIn("us", {equalsSign, control}), ElementsAre(ctrl | '='));
}

TEST(KeyValuesTest, LaunchKeysHaveOtherNumbersInPlasma5) {
    EXPECT_THAT(valuesIn("us", {f14, control}, 0, six), ElementsAre(ctrl | Qt::Key_Launch5));
    EXPECT_THAT(valuesIn("us", {f14, control}, 0, five), ElementsAre(ctrl | Qt::Key_Launch7));
}

TEST(KeyValuesTest, AValueLeadsBackToItsCombination) {
    const auto keymap = wayland::Keymap::parse(keymapText("us,de"));
    for (const std::uint32_t layout : {0U, 1U}) {
        const KeyValues values(*keymap, layout, six);
        for (const KeyCombination& combination :
             {KeyCombination{k, control | option}, KeyCombination{y, command},
              KeyCombination{one, control | shift}, KeyCombination{tab, option | shift},
              KeyCombination{fiveOfKeypad, control}, KeyCombination{f9, shift}}) {
            for (const int value : values.valuesOf(combination)) {
                EXPECT_EQ(values.combinationOf(value), combination) << value;
            }
        }
    }
}

TEST(KeyValuesTest, AValueThatNoKeyGivesLeadsNowhere) {
    const auto keymap = wayland::Keymap::parse(keymapText("us"));
    EXPECT_EQ(KeyValues(*keymap, 0, six).combinationOf(ctrl | 0x041B), std::nullopt);
}

} // namespace

} // namespace hollowfernpike::test
