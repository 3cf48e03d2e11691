#include "desktop/editor/EditorStory.h"
#include "support/WaitUntil.h"
#include "support/XClient.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr auto takenByQuartz = "この組み合わせは「Quartz」で使われています";
constexpr auto heldElsewhere = "この組み合わせはほかのプログラムが使っています";

/// A combination that somebody has already.
class TakenCombinationsTest : public EditorStoryTest {
protected:
    XClient other{story.desktop.display()};

    /// The combination of Quartz, which brings Quartz to the front as well.
    void recordTaken(xcb_window_t editor) {
        story.record(editor, bound);
        ASSERT_TRUE(story.isInFront(quartz));
        ASSERT_TRUE(story.bringForward([&] { return std::vector{editor}; }));
    }

    bool isSaid(std::string_view title, std::string_view words) {
        const auto whole = story.reader.find("dialog", title);
        return waitUntil([&] {
            return std::ranges::count(story.reader.partsOf(whole), words, &Accessible::name) == 1;
        });
    }

    bool nothingIsSaid(std::string_view title) {
        const auto whole = story.reader.find("dialog", title);
        return waitUntil([&] {
            const auto parts = story.reader.partsOf(whole);
            return std::ranges::none_of(parts, [](const Accessible& part) {
                return part.name == takenByQuartz || part.name == heldElsewhere;
            });
        });
    }

    /// Whether, after some waiting, the card of Quartz carries a sign, or no more.
    bool hasSign(bool expected) {
        return waitUntil([&] {
            const auto parts =
                story.reader.partsOf(story.reader.find("frame", story.titles.management));
            return expected == std::ranges::any_of(parts, [](const Accessible& part) {
                       return part.name == heldElsewhere;
                   });
        });
    }

    /// Has another program take the combination of Quartz while the utility does not run.
    void takeAway() {
        story.utility().signal(SIGTERM);
        story.utility().wait();
        ASSERT_TRUE(other.grab(story.grabOf(bound)));
        story.start();
        story.openManagement();
    }
};

TEST_F(TakenCombinationsTest, TheEditorSaysWhichApplicationHasItAndForbidsNothing) {
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.record(editor, third);
    EXPECT_TRUE(nothingIsSaid(story.titles.adding));
    recordTaken(editor);
    EXPECT_TRUE(isSaid(story.titles.adding, takenByQuartz));
    story.clickSave(editor);
    EXPECT_EQ(story.list(), before);
}

TEST_F(TakenCombinationsTest, AShortcutMayKeepItsOwn) {
    const auto editor = story.clickEdit(0);
    EXPECT_TRUE(nothingIsSaid(story.titles.editing));
    recordTaken(editor);
    EXPECT_TRUE(nothingIsSaid(story.titles.editing));
}

TEST_F(TakenCombinationsTest, TheEditorSaysThatAnotherProgramHoldsIt) {
    ASSERT_TRUE(other.grab(story.grabOf(third)));
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.record(editor, third);
    EXPECT_TRUE(isSaid(story.titles.adding, heldElsewhere));
}

TEST_F(TakenCombinationsTest, ACombinationThatIsAskedForIsNotKept) {
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.record(editor, third);
    EXPECT_TRUE(nothingIsSaid(story.titles.adding));
    EXPECT_TRUE(other.grab(story.grabOf(third)));
}

TEST_F(TakenCombinationsTest, ACardShowsThatAnotherProgramHoldsItUntilThatLetsGo) {
    EXPECT_TRUE(hasSign(false));
    takeAway();
    EXPECT_TRUE(hasSign(true));
    other.ungrab(story.grabOf(bound));
    ASSERT_TRUE(story.switchTo(story.front));
    const auto window = story.reader.find("frame", story.titles.management);
    ASSERT_TRUE(waitUntil([&] { return !story.reader.isActive(window); }));
    story.openManagement();
    EXPECT_TRUE(hasSign(false));
}

TEST_F(TakenCombinationsTest, ACardShowsItIsFreeOnceItsPressIsOurs) {
    takeAway();
    ASSERT_TRUE(hasSign(true));
    other.ungrab(story.grabOf(bound));
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(quartz));
    EXPECT_TRUE(hasSign(false));
}

} // namespace
} // namespace hollowfernpike
