#include "desktop/editor/EditorStory.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t escape = 53;

/// Every key that has a name, with one modifier.
class EveryKeyTest : public EditorStoryTest, public testing::WithParamInterface<std::uint64_t> {
protected:
    void SetUp() override {
        EditorStoryTest::SetUp();
        story.unbindWindowManager();
    }

    Combination with(const KeyPosition& key) const { return {key.keyCode, GetParam()}; }

    /// Records the combination for the one shortcut and saves it.
    void save(const Combination& combination) {
        const auto editor = story.clickEdit(0);
        story.clickRecord(story.titles.editing);
        ASSERT_TRUE(story.records(story.titles.editing, combination));
        story.strikeAndLeave(editor, "RTRN");
        auto expected = before;
        expected[0]["keyCode"] = combination.keyCode;
        expected[0]["modifierFlags"] = combination.modifierFlags;
        ASSERT_TRUE(story.listBecomes(expected));
        story.managementComes();
    }
};

TEST_P(EveryKeyTest, IsRecordedShownAndSaved) {
    int saved = 0;
    for (const auto& key : namedKeys()) {
        if (key.keyCode != escape) {
            ASSERT_NO_FATAL_FAILURE(save(with(key))) << key.name;
            ++saved;
        }
    }
    EXPECT_EQ(saved, 79);
}

TEST_P(EveryKeyTest, ExceptEscapeWhichCallsTheRecordingOff) {
    const auto editor = story.clickEdit(0);
    story.clickRecord(story.titles.editing);
    story.strike({escape, GetParam()});
    story.part(story.titles.editing, "push button", "記録");
    EXPECT_TRUE(story.recorderShows(story.titles.editing, text::pressAKey));
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_EQ(story.list(), before);
}

std::string nameOfModifier(const testing::TestParamInfo<std::uint64_t>& info) {
    switch (info.param) {
    case control:
        return "withControl";
    case option:
        return "withOption";
    case shift:
        return "withShift";
    default:
        return "withCommand";
    }
}

INSTANTIATE_TEST_SUITE_P(, EveryKeyTest, testing::Values(control, option, shift, command),
                         nameOfModifier);

} // namespace
} // namespace hollowfernpike
