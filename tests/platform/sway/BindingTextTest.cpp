#include "platform/sway/keys/BindingText.h"

#include "platform/EventTap.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using namespace platform::event_flags;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(BindingTextTest, KeysAreNamedByTheirPosition) {
    EXPECT_THAT(sway::keysOf({40, control | option}), ElementsAre("Ctrl+Mod1+45"));
    EXPECT_THAT(sway::keysOf({0, command}), ElementsAre("Mod4+38"));
    EXPECT_THAT(sway::keysOf({122, shift | control | option | command}),
                ElementsAre("Ctrl+Shift+Mod1+Mod4+67"));
}

TEST(BindingTextTest, ABareKeyHasNoModifiers) {
    EXPECT_THAT(sway::keysOf({101, 0}), ElementsAre("75"));
}

TEST(BindingTextTest, BothCommasOfTheKeypadAreBound) {
    EXPECT_THAT(sway::keysOf({95, option}), testing::UnorderedElementsAre("Mod1+103", "Mod1+129"));
}

TEST(BindingTextTest, ACodeThatNoKeyHasIsNotBound) {
    EXPECT_THAT(sway::keysOf({52, option}), IsEmpty());
}

TEST(BindingTextTest, TheCommandTellsTheCombination) {
    for (const platform::KeyCombination combination :
         {platform::KeyCombination{0, 0}, platform::KeyCombination{65535, shift | command}}) {
        EXPECT_EQ(sway::combinationOf(sway::commandOf(combination)), combination);
    }
}

TEST(BindingTextTest, CommandsOfOthersTellNothing) {
    for (const auto* const command :
         {"", "nop", "kill", "exec nop app.hollowfernpike.Hollowfernpike 1 2",
          "nop app.hollowfernpike.Hollowfernpike ", "nop app.hollowfernpike.Hollowfernpike 1",
          "nop app.hollowfernpike.Hollowfernpike x 2",
          "nop app.hollowfernpike.Hollowfernpike 65536 2"}) {
        EXPECT_EQ(sway::combinationOf(command), std::nullopt) << command;
    }
}

} // namespace

} // namespace hollowfernpike::test
