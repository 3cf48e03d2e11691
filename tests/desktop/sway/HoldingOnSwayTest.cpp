#include "desktop/sway/SwayStory.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

// A held key begins to repeat after two thirds of a second. What takes longer than that to open its
// window shows by coming that the key has repeated.
const ApplicationTraits slowStarter{.options = {"--delay", "1500"}};

class HoldingOnSwayTest : public testing::Test {
protected:
    SwayStory story;
    Application& front = story.open("Front");
};

TEST_F(HoldingOnSwayTest, StartsOneCopyOfASlowStarterWhichComesBackByTheNextPress) {
    auto& slow = story.install("Slow", slowStarter);
    story.bind(bound, slow);
    story.bind(another, front);
    story.startUtility();
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(slow));
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(slow));
    EXPECT_EQ(slow.starts(), 1);
    EXPECT_EQ(slow.copies().size(), 1);

    story.strike(another);
    ASSERT_TRUE(story.isInFront(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(slow));
    EXPECT_TRUE(story.getsKeys(slow));
    EXPECT_EQ(slow.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(HoldingOnSwayTest, AHeldKeyAsksForItsTargetOnce) {
    auto& target = story.open("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    auto& late = story.open("Late", slowStarter);
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(late)) << "the target has not come a second time";
    EXPECT_TRUE(story.isInFront(late));
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(HoldingOnSwayTest, DoesNoHarmToATargetThatIsInFrontAlready) {
    auto& witness = story.install("Witness", slowStarter);
    story.bind(bound, front);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.hold(bound);
    witness.start();
    ASSERT_TRUE(story.isInFront(witness));
    story.letGo(bound);
    EXPECT_TRUE(story.switchTo(front));
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_EQ(front.starts(), 1);
}

} // namespace
} // namespace hollowfernpike
