#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// The utility runs as a client that the display does not trust, until it does.
class UntrustedTest : public testing::Test {
protected:
    EditorStory story;
    Application& quartz = story.open("Quartz");
    const std::string_view adding = story.titles.adding;
    const std::filesystem::path authority = story.authority("authority", "untrusted");

    void SetUp() override {
        auto& utility = story.launchUtility({{"XAUTHORITY", authority.string()}});
        ASSERT_TRUE(waitUntil([&] { return !utility.errors().empty(); }));
        story.openManagement();
        const auto editor = story.clickAdd();
        story.choose(editor, quartz.name());
        story.clickOn(story.part(adding, "push button", "記録"));
    }
};

TEST_F(UntrustedTest, ItSaysWhatIsMissingAndRecordsNothing) {
    EXPECT_TRUE(story.recorderShows(adding, text::grantPermission));
    story.part(adding, "push button", "記録"); // or it throws
    story.strike(bound);
    story.clickOn(story.part(adding, "push button", "記録")); // arrives after the keys
    EXPECT_TRUE(story.recorderShows(adding, text::grantPermission));
    story.part(adding, "push button", "記録");
    EXPECT_FALSE(story.reader.isEnabled(story.part(adding, "push button", "保存")));
}

TEST_F(UntrustedTest, OnceItIsTrustedTheSameButtonRecords) {
    EXPECT_TRUE(story.recorderShows(adding, text::grantPermission));
    std::filesystem::rename(story.authority("better", "trusted"), authority);
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, bound));
    story.clickOn(story.part(adding, "push button", "保存"));
    EXPECT_TRUE(story.saves({{quartz, bound}}));
    ASSERT_TRUE(story.isLive(story.grabOf(bound)));
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

} // namespace
} // namespace hollowfernpike
