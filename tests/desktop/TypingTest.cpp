#include "desktop/Story.h"
#include "support/ContextSwitches.h"
#include "support/WaitUntil.h"

#include <array>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::array<const char*, 12> letters{"AD01", "AC02", "AB03", "AE04", "AD05", "AC06",
                                              "AB07", "AE08", "SPCE", "AD10", "LEFT", "KP5"};
const Combination toFront{37, control | option};
const Combination toOther{38, control | option};

class TypingTest : public testing::Test {
protected:
    TypingTest() { story.turnRepetitionOff(); }

    Story story;
    Application& front = story.open("Front");

    void expectStrike(const std::vector<std::string>& keys, bool swallowed) {
        for (const auto& key : keys) {
            if (!(swallowed && key == keys.back())) {
                expected.push_back({true, story.keyboard.keycode(key)});
            }
        }
        for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
            expected.push_back({false, story.keyboard.keycode(*key)});
        }
    }

    /// The keys that the application has seen after the first `since`, without modifier states.
    static std::vector<SeenKey> seen(const Application& application, std::size_t since) {
        auto keys = application.keys();
        keys.erase(keys.begin(), keys.begin() + static_cast<std::ptrdiff_t>(since));
        for (auto& key : keys) {
            key.state = 0;
        }
        return keys;
    }

    std::vector<SeenKey> expected;
};

TEST_F(TypingTest, AroundACombinationKeepsItsOrderAndLosesOnlyTheBoundPress) {
    story.bind(toFront, front);
    story.startUtility();
    const auto before = front.keys().size();
    for (std::size_t index = 0; index < 200; ++index) {
        const bool isBound = index % 8 == 5;
        const auto keys =
            isBound ? toFront.keys() : std::vector<std::string>{letters[index % letters.size()]};
        expectStrike(keys, isBound);
        story.keyboard.strike(keys);
    }
    ASSERT_TRUE(story.getsKeys(front));
    auto got = seen(front, before);
    got.resize(expected.size());
    EXPECT_EQ(got, expected);
}

TEST_F(TypingTest, OfUnboundCombinationsReachesTheFocusWhole) {
    story.bind(toOther, front);
    story.startUtility();
    const auto before = front.keys().size();
    for (const auto set : modifierSets()) {
        const Combination unbound{0, set};
        expectStrike(unbound.keys(), false);
        story.strike(unbound);
    }
    ASSERT_TRUE(story.getsKeys(front));
    auto got = seen(front, before);
    got.resize(expected.size());
    EXPECT_EQ(got, expected);
}

TEST_F(TypingTest, WhileApplicationsComeAndGoLosesNoKey) {
    auto& other = story.open("Other");
    story.bind(toFront, front);
    story.bind(toOther, other);
    story.startUtility();
    const auto key = story.keyboard.keycode("AD01");
    for (int round = 0; round < 20; ++round) {
        story.strike(round % 2 == 0 ? toFront : toOther);
        for (int letter = 0; letter < 10; ++letter) {
            story.keyboard.strike({"AD01"});
        }
        ASSERT_TRUE(story.isInFront(round % 2 == 0 ? front : other));
    }
    ASSERT_TRUE(story.switchTo(front));
    ASSERT_TRUE(story.switchTo(other));
    EXPECT_EQ(front.downs(key) + other.downs(key), 200);
    EXPECT_EQ(front.ups(key) + other.ups(key), 200);
    EXPECT_TRUE(story.nobodySaw(toFront));
    EXPECT_TRUE(story.nobodySaw(toOther));
}

TEST_F(TypingTest, WakesNobodyEvenWithModifiers) {
    constexpr std::uint64_t lastTimersOfItsStart = 20;
    constexpr int rounds = 100;
    story.bind(toFront, front);
    story.startUtility();
    story.keyboard.strike({"AC09"}); // after the first key from another keyboard all learn its map
    ASSERT_TRUE(story.getsKeys(front));
    const auto sleepsForASecond = [this] {
        const auto already = timesGoneToSleep(story.utility().pid());
        return story.desktop.start({"sleep", "1"})->wait() == 0 &&
               timesGoneToSleep(story.utility().pid()) == already;
    };
    ASSERT_TRUE(waitUntil(sleepsForASecond));
    const auto before = timesGoneToSleep(story.utility().pid());
    for (int round = 0; round < rounds; ++round) {
        story.keyboard.strike({"AC09"});
        story.keyboard.strike({"LCTL", "LFSH", "AC09"});
    }
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_LT(timesGoneToSleep(story.utility().pid()), before + lastTimersOfItsStart);
}

} // namespace
} // namespace hollowfernpike
