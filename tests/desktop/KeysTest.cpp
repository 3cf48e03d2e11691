#include "desktop/ActivationRequests.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint64_t unusualModifiers = control | shift | command;

class KeysTest : public testing::Test {
protected:
    /// Binds these keys to two applications in turn, strikes each and sees who comes.
    void eachBringsItsApplication(const std::vector<std::uint16_t>& keyCodes);

    Story story;
    Application& front = story.open("Front");
    Application& even = story.open("Even");
    Application& odd = story.open("Odd");
};

void KeysTest::eachBringsItsApplication(const std::vector<std::uint16_t>& keyCodes) {
    for (std::size_t index = 0; index < keyCodes.size(); ++index) {
        story.bind({keyCodes[index], unusualModifiers}, index % 2 == 0 ? even : odd);
    }
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    for (std::size_t index = 0; index < keyCodes.size(); ++index) {
        story.strike({keyCodes[index], unusualModifiers});
        ASSERT_TRUE(story.isInFront(index % 2 == 0 ? even : odd)) << "key code " << keyCodes[index];
    }
    for (const auto* application : {&front, &even, &odd}) {
        ASSERT_TRUE(story.switchTo(*application));
    }
    for (const auto keyCode : keyCodes) {
        EXPECT_TRUE(story.nobodySaw({keyCode, unusualModifiers}));
    }
}

TEST_F(KeysTest, EachNamedKeyIsSwallowedAndBringsItsApplication) {
    std::vector<std::uint16_t> keyCodes;
    for (const auto& key : namedKeys()) {
        if (key.name != "AC11") { // getsKeys() strikes this one
            keyCodes.push_back(key.keyCode);
        }
    }
    ASSERT_EQ(keyCodes.size(), 79);
    eachBringsItsApplication(keyCodes);
}

TEST_F(KeysTest, TheApostropheKeyIsSwallowedAndBringsItsApplication) {
    const Combination apostrophe{39, unusualModifiers};
    story.bind(apostrophe, even);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    const auto before = front.downs(story.grabOf(apostrophe).key);
    story.strike(apostrophe);
    EXPECT_TRUE(story.isInFront(even));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(front.downs(story.grabOf(apostrophe).key), before + 1) << "the fence alone";
}

TEST_F(KeysTest, EachKeyWithoutANameIsSwallowedAndBringsItsApplication) {
    std::vector<std::uint16_t> keyCodes;
    for (const auto& key : unnamedKeys()) {
        ASSERT_NE(story.keyboard.keycode(key.name), 0) << key.name;
        keyCodes.push_back(key.keyCode);
    }
    eachBringsItsApplication(keyCodes);
}

TEST_F(KeysTest, TwoKeysThatShareACodeBothBringItsApplication) {
    story.bind({95, control | shift}, even);
    story.bind({37, control | shift}, front);
    story.startUtility();
    for (const auto* comma : {"JPCM", "I129"}) {
        story.strike({37, control | shift});
        ASSERT_TRUE(story.isInFront(front));
        story.keyboard.strike({"LCTL", "LFSH", comma});
        EXPECT_TRUE(story.isInFront(even)) << comma;
    }
}

TEST_F(KeysTest, AKeyThatTheMapLacksLeavesTheOthersLive) {
    for (const auto missing : std::array<std::uint16_t, 4>{52, 54, 255, 65535}) {
        story.bind({missing, control | option}, odd);
    }
    story.bind({37, control | option}, even);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike({37, control | option});
    EXPECT_TRUE(story.isInFront(even));
    EXPECT_TRUE(story.getsKeys(even));
    EXPECT_TRUE(story.nobodySaw({37}));
}

TEST_F(KeysTest, ABareKeyIsSwallowedEverywhereButNotWithModifiers) {
    const Combination bare{96};
    story.bind(bare, even);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bare);
    ASSERT_TRUE(story.isInFront(even));
    ActivationRequests requests(story.desktop.display());
    story.strike(bare);
    ASSERT_TRUE(story.getsKeys(even));
    ASSERT_TRUE(waitUntil([&] { return requests.count() == 1; }));
    EXPECT_TRUE(story.brings(even, odd, bare));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(story.nobodySaw(bare));

    for (const auto modifiers : {shift, control, option, control | shift}) {
        story.strike({96, modifiers});
    }
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_EQ(front.downs(story.grabOf(bare).key), 4);
}

TEST_F(KeysTest, OfTwoShortcutsOnOneCombinationTheLaterWins) {
    story.bind({37, control | option}, even);
    story.bind({37, control | option | 0x800100}, odd);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike({37, control | option});
    EXPECT_TRUE(story.isInFront(odd));
    EXPECT_TRUE(story.getsKeys(odd));
    const auto log = even.log();
    EXPECT_EQ(std::ranges::count(log, "focus-in " + std::to_string(even.windows().at(0))), 1)
        << "only as it was opened";
}

} // namespace
} // namespace hollowfernpike
