#include "desktop/SignalName.h"
#include "desktop/Story.h"
#include "support/Files.h"
#include "support/Leaks.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class DisplayGoneTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        story.bind(bound, story.install("Target"));
        story.writeShortcuts();
        story.launchUtility({leaksAllowed()}); // the toolkit forgets a connection that has broken
        EXPECT_TRUE(story.areLive());
    }

    Story story;
};

TEST_P(DisplayGoneTest, ItEndsLeavesItsFileAndTheNextOneWorksOnAnotherDisplay) {
    const auto list = contentsOf(story.shortcutsFile());
    const auto grab = story.grabOf(bound);
    story.desktop.virtualDisplay().server().signal(GetParam());
    const auto status = story.utility().wait();
    ASSERT_TRUE(status.has_value()) << "still running";
    EXPECT_THAT(*status, testing::AnyOf(0, 1)) << "whoever notices first: we, or the toolkit";
    EXPECT_EQ(contentsOf(story.shortcutsFile()), list);
    EXPECT_THAT(namesIn(story.shortcutsFile().parent_path()),
                testing::ElementsAre("shortcuts.json"));

    const VirtualDisplay another;
    XClient prober(another.name());
    story.launchUtility({{"DISPLAY", another.name()}});
    EXPECT_TRUE(waitUntil([&] { return prober.areTaken({grab}); })) << story.utility().errors();
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfAServerThatGets, DisplayGoneTest, testing::Values(SIGTERM, SIGKILL),
                         signalName);

} // namespace
} // namespace hollowfernpike
