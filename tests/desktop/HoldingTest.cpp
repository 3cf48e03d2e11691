#include "desktop/Story.h"
#include "desktop/WindowManagers.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination held{37, control | option};
const Combination another{38, control | option};

class HoldingTest : public testing::TestWithParam<const char*> {
protected:
    Story story{GetParam()};
    Application& front = story.open("Front");

    void press(const Combination& combination) {
        for (const auto& key : combination.keys()) {
            story.keyboard.press(key);
        }
    }

    void release(const Combination& combination) {
        auto keys = combination.keys();
        for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
            story.keyboard.release(*key);
        }
    }

    /// Waits until the held key has repeated that often while the application was in front: what
    /// it gets of a repeat is the key-up alone.
    bool seesRepeats(const Application& application, std::size_t count) {
        const auto key = story.grabOf(held).key;
        return waitUntil([&] { return application.ups(key) >= count; });
    }
};

TEST_P(HoldingTest, StartsOneCopyOfASlowStarterAndLeavesItInFront) {
    auto& slow = story.install("Slow", {.options = {"--delay", "1500"}});
    auto& witness = story.install("Witness");
    story.bind(held, slow);
    story.bind(another, witness);
    story.startUtility();

    press(held);
    ASSERT_TRUE(seesRepeats(front, 5));
    ASSERT_TRUE(slow.windows().empty()) << "the repeats came too late to matter";
    ASSERT_TRUE(story.isInFront(slow));
    ASSERT_TRUE(seesRepeats(slow, 5));
    release(held);
    EXPECT_TRUE(story.isInFront(slow));
    EXPECT_TRUE(story.getsKeys(slow));

    story.strike(another);
    ASSERT_TRUE(story.isInFront(witness));
    EXPECT_EQ(slow.starts(), 1);
    EXPECT_EQ(slow.copies().size(), 1);
    EXPECT_TRUE(story.nobodySaw(held));
}

TEST_P(HoldingTest, DoesNoHarmToATargetThatIsInFrontAlready) {
    story.bind(held, front);
    story.startUtility();
    press(held);
    ASSERT_TRUE(seesRepeats(front, 10));
    release(held);
    EXPECT_TRUE(story.isInFront(front));
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.nobodySaw(held));
    EXPECT_EQ(front.starts(), 1);
}

INSTANTIATE_TEST_SUITE_P(Under, HoldingTest, windowManagers(), windowManagerName);

} // namespace
} // namespace hollowfernpike
