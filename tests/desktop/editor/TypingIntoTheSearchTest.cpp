#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Somebody who sets the keyboard while no window of the program is open, and types into one then.
class TypingIntoTheSearchTest : public testing::Test {
protected:
    EditorStory story;

    /// The field, which has the keys.
    Accessible search() {
        story.openManagement();
        story.clickAdd();
        auto& reader = story.reader;
        reader.press(reader.find(reader.find("dialog", story.titles.adding), "push button",
                                 "アプリを選択..."));
        auto field = reader.find(reader.find("dialog", story.titles.applications), "text", "検索");
        EXPECT_TRUE(waitUntil([&] { return reader.isFocused(field); }));
        return field;
    }

    testing::AssertionResult reads(const Accessible& field, const std::string& text) {
        if (waitUntil([&] { return story.reader.text(field) == text; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << story.reader.text(field);
    }
};

TEST_F(TypingIntoTheSearchTest, KnowsTheLockThatWasSetBeforeAndTheShiftKey) {
    story.start();
    story.keyboard.strike({"CAPS"});
    const auto field = search();
    story.keyboard.strike({"AD01"});
    EXPECT_TRUE(reads(field, "Q"));
    story.keyboard.strike({"LFSH", "AD02"});
    EXPECT_TRUE(reads(field, "Qw"));
}

TEST_F(TypingIntoTheSearchTest, KnowsTheLayoutThatWasChosenBefore) {
    story.run({"setxkbmap", "-layout", "us,de", "-option", "grp:toggle"});
    story.start();
    story.keyboard.strike({"RALT"});
    const auto field = search();
    story.keyboard.strike({"AD06"});
    EXPECT_TRUE(reads(field, "z"));
    story.keyboard.strike({"LFSH", "AD06"});
    EXPECT_TRUE(reads(field, "zZ"));
}

} // namespace
} // namespace hollowfernpike
