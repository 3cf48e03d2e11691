#include "desktop/wayland/OnWayland.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

// A held key begins to repeat after two thirds of a second. What takes longer than that to open its
// window shows by coming that the key has repeated.
const ApplicationTraits slowStarter{.options = {"--delay", "1500"}};

class HoldingOnWaylandTest : public OnWayland {
protected:
    Application& front = story.open("Front");

    static std::ptrdiff_t timesInFront(const Application& application) {
        return std::ranges::count_if(application.log(), [](const std::string& line) {
            return line.starts_with("focus-in ");
        });
    }
};

TEST_F(HoldingOnWaylandTest, StartsOneCopyOfASlowStarterWhichComesBackByTheNextPress) {
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

TEST_F(HoldingOnWaylandTest, AHeldKeyAsksForItsTargetOnce) {
    auto& target = story.open("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    const auto before = timesInFront(target);
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.open("Late", slowStarter);
    auto& last = story.open("Last", slowStarter);
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(last));
    EXPECT_EQ(timesInFront(target), before + 1);
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(HoldingOnWaylandTest, DoesNoHarmToATargetThatIsInFrontAlready) {
    story.bind(bound, front);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    const auto before = timesInFront(front);
    story.hold(bound);
    story.open("Late", slowStarter);
    auto& last = story.open("Last", slowStarter);
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(last));
    EXPECT_EQ(timesInFront(front), before);
    EXPECT_EQ(front.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

} // namespace
} // namespace hollowfernpike
