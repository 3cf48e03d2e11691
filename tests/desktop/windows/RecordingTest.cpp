#include "desktop/windows/WindowStory.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

class RecordingTest : public testing::Test {
protected:
    WindowStory story;
    Application& quartz = story.open("Quartz");

    void SetUp() override {
        story.start();
        story.openManagement();
    }
};

TEST_F(RecordingTest, EscapeWithNothingRecordedLeavesEverythingAsItWas) {
    const auto editor = story.clickAdd();
    story.choose(editor, quartz.name());
    story.startRecording(editor);
    const auto connections = [this] { return story.pager.clients(story.utility().pid()); };
    const auto whileRecording = connections();
    story.strikeAndLeave(editor, "ESC");
    EXPECT_TRUE(waitUntil([&] { return connections() < whileRecording; })) << "it still listens";
    EXPECT_TRUE(story.passes(story.front, bound.keys()));
    EXPECT_EQ(story.list(), json::array());
    story.openManagement();
    story.add(quartz, bound);
    EXPECT_EQ(story.list(), json::array({story.record(0, bound, quartz)}));
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

} // namespace
} // namespace hollowfernpike
