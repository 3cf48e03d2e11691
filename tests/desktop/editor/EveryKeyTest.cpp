#include "desktop/editor/EditorStory.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t escape = 53;

constexpr std::size_t partsOfKeys = 8; // because each key takes half a second

/// Every key that has a name, with one modifier; a part of the keys at a time.
class EveryKeyTest : public EditorStoryTest,
                     public testing::WithParamInterface<std::tuple<std::uint64_t, std::size_t>> {
protected:
    void SetUp() override {
        EditorStoryTest::SetUp();
        story.unbindWindowManager();
    }

    static Combination with(const KeyPosition& key) { return {key.keyCode, modifier()}; }
    static std::uint64_t modifier() { return std::get<0>(GetParam()); }
    static std::size_t part() { return std::get<1>(GetParam()); }

    /// Records the combination for the one shortcut and saves it.
    void save(const Combination& combination) {
        const auto editor = story.clickEdit(0);
        story.clickRecord(story.titles.editing);
        ASSERT_TRUE(story.records(story.titles.editing, combination));
        story.clickSave(editor); // not by Return: Tab has moved the focus
        auto expected = before;
        expected[0]["keyCode"] = combination.keyCode;
        expected[0]["modifierFlags"] = combination.modifierFlags;
        ASSERT_TRUE(story.listBecomes(expected));
        story.managementComes();
    }
};

TEST_P(EveryKeyTest, IsRecordedShownAndSaved) {
    const auto keys = namedKeys();
    ASSERT_EQ(keys.size(), 80U);
    for (std::size_t index = part(); index < keys.size(); index += partsOfKeys) {
        const auto& key = keys[index];
        if (key.keyCode != escape) {
            ASSERT_NO_FATAL_FAILURE(save(with(key))) << key.name;
        }
    }
}

using EscapeTest = EveryKeyTest;

TEST_P(EscapeTest, CallsTheRecordingOff) {
    const auto editor = story.clickEdit(0);
    story.clickRecord(story.titles.editing);
    story.strike({escape, modifier()});
    story.part(story.titles.editing, "push button", "記録");
    EXPECT_TRUE(story.recorderShows(story.titles.editing, text::pressAKey));
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_EQ(story.list(), before);
}

const char* nameOf(std::uint64_t modifier) {
    switch (modifier) {
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

std::string nameOfCase(const testing::TestParamInfo<EveryKeyTest::ParamType>& info) {
    const auto [modifier, part] = info.param;
    return nameOf(modifier) + ("Part" + std::to_string(part));
}

const auto modifiers = testing::Values(control, option, shift, command);
INSTANTIATE_TEST_SUITE_P(, EveryKeyTest,
                         testing::Combine(modifiers, testing::Range(std::size_t{0}, partsOfKeys)),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(, EscapeTest, testing::Combine(modifiers, testing::Values(std::size_t{0})),
                         nameOfCase);

} // namespace
} // namespace hollowfernpike
