#include "desktop/Story.h"

#include <array>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr const char* precomposed = "Caf\u00e9";
constexpr const char* decomposed = "Cafe\u0301";

class NamesTest : public testing::Test {
protected:
    Story story;
};

TEST_F(NamesTest, AShortcutInPrecomposedFormFindsAnEntryInDecomposedForm) {
    auto& target = story.open(decomposed, {.windowClass = "Coffee"});
    auto& front = story.open("Front");
    story.bind(bound, ShortcutTarget{.path = "", .name = precomposed, .identifier = ""});
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(NamesTest, AShortcutInDecomposedFormFindsAnEntryInPrecomposedForm) {
    auto& target = story.open(precomposed, {.windowClass = "Coffee"});
    auto& front = story.open("Front");
    story.bind(bound, ShortcutTarget{.path = "", .name = decomposed, .identifier = ""});
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(NamesTest, OtherCaseIsAnotherName) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    auto& other = story.install("Other");
    story.bind(bound, ShortcutTarget{.path = other.entry(), .name = "target", .identifier = ""});
    story.startUtility();
    EXPECT_TRUE(story.brings(other, front, bound)) << "launched, for no window has that name";
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(NamesTest, AVisibleWindowOfThatNameComesForwardWithoutAnIdentifier) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, ShortcutTarget{.path = target.entry(), .name = "Target", .identifier = ""});
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(NamesTest, AVisibleWindowOfThatNameGoesBeforeAForeignIdentifier) {
    auto& target = story.open("Target");
    auto& foreign = story.open("Foreign");
    auto& front = story.open("Front");
    story.bind(bound, ShortcutTarget{.path = foreign.entry(),
                                     .name = "Target",
                                     .identifier = foreign.identifier()});
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(foreign.starts(), 1);
}

TEST_F(NamesTest, TheIdentifierDecidesWhereNoVisibleWindowHasTheName) {
    auto& foreign = story.open("Foreign");
    auto& front = story.open("Front");
    story.bind(bound, ShortcutTarget{.path = front.entry(),
                                     .name = "Nobody",
                                     .identifier = foreign.identifier()});
    story.startUtility();
    EXPECT_TRUE(story.brings(foreign, front, bound));
    EXPECT_EQ(foreign.starts(), 1);
}

TEST_F(NamesTest, AStrangerWithTheProgramOfSeveralApplicationsIsNoneOfThem) {
    std::vector<Application*> targets;
    for (const auto* name : {"One", "Two", "Three"}) {
        targets.push_back(&story.install(name, {.program = "Common"}));
    }
    auto& stranger = story.install("Stranger", {.program = "Common"});
    std::filesystem::remove(stranger.entry());
    stranger.start();
    ASSERT_TRUE(story.isInFront(stranger));
    const std::array combinations{bound, another, third};
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        story.bind(combinations.at(index), *targets.at(index));
    }
    story.startUtility();
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        EXPECT_TRUE(story.brings(*targets.at(index), stranger, combinations.at(index)));
        EXPECT_EQ(targets.at(index)->starts(), 1);
    }
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(*targets.front()));
    EXPECT_EQ(targets.front()->starts(), 1);
}

TEST_F(NamesTest, AnEntryWithASpaceQuotesAndAPercentSignIsLaunchedAsWritten) {
    auto& target = story.install("100% \"Mine\" $HOME `x`", {.windowClass = "Mine"});
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

} // namespace
} // namespace hollowfernpike
