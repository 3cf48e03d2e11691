#include "desktop/windows/WindowStoryTest.h"

#include "support/WaitUntil.h"

#include <set>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

using AddingTest = WindowStoryTest;

TEST_F(AddingTest, ThreeApplicationsInARowAreWrittenAndLiveAtOnce) {
    auto& quartz = story.open("Quartz");
    auto& feldspar = story.open("Feldspar");
    auto& obsidian = story.install("Obsidian");
    story.start();
    story.openManagement();
    story.add(quartz, first);
    EXPECT_EQ(story.list(), json::array({story.record(0, first, quartz)}));
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    story.openManagement();
    story.add(feldspar, second);
    EXPECT_EQ(story.list(),
              json::array({story.record(0, first, quartz), story.record(1, second, feldspar)}));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    story.openManagement();
    story.add(obsidian, third);
    EXPECT_EQ(story.list(),
              json::array({story.record(0, first, quartz), story.record(1, second, feldspar),
                           story.record(2, third, obsidian)}));
    EXPECT_TRUE(story.brings(obsidian, story.front, third)) << "launched";
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
}

TEST_F(AddingTest, EveryShortcutHasAnIdentifierOfItsOwn) {
    auto& quartz = story.install("Quartz");
    story.start();
    story.openManagement();
    story.add(quartz, first);
    story.add(quartz, second);
    std::set<std::string> identifiers;
    for (const auto& shortcut : story.list()) {
        identifiers.insert(shortcut.at("id").get<std::string>());
    }
    EXPECT_EQ(identifiers.size(), 2);
}

TEST_F(AddingTest, ATakenCombinationIsNotAddedAndKeepsItsApplication) {
    auto& quartz = story.open("Quartz");
    auto& feldspar = story.open("Feldspar");
    story.start();
    story.openManagement();
    story.add(quartz, first);
    const auto before = story.list();
    story.openManagement();
    const auto editor = story.clickAdd();
    story.choose(editor, feldspar.name());
    // It is recorded again if the editor lost the focus before it had taken the press.
    const auto isRecordedAndSaved = [&] {
        story.startRecording(editor);
        story.strike(first);
        EXPECT_TRUE(story.isInFront(quartz)) << "it stays bound while somebody records";
        story.pager.activate(editor);
        EXPECT_TRUE(story.isActive(editor));
        story.finishRecording(editor);
        story.keyboard.strike({"RTRN"});
        return waitUntil([&] { return story.pager.activeWindow() != editor; }, patience / 4);
    };
    story.require(isRecordedAndSaved, "the editor does not save");
    EXPECT_TRUE(waitUntil([&] {
        return story.utility().output().find("警告: 同じショートカットキー") != std::string::npos;
    }));
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, first));
}

TEST_F(AddingTest, ClosingTheWindowLeavesTheCombinationsLiveAndItComesBackTheSame) {
    auto& quartz = story.open("Quartz");
    auto& feldspar = story.open("Feldspar");
    story.start();
    const auto window = story.openManagement();
    story.add(quartz, first);
    story.openManagement();
    story.screen.resize(window, 620, 340);
    ASSERT_TRUE(waitUntil([&] { return story.screen.placeOf(window).width == 620; }));
    const auto place = story.screen.placeOf(window);
    story.pager.close(window);
    story.goes(window);
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_FALSE(story.utility().hasEnded());
    story.openManagement();
    EXPECT_TRUE(waitUntil(
        [&] { return story.screen.placeOf(story.comes(story.titles.management)) == place; }));
    story.add(feldspar, second);
    EXPECT_EQ(story.list(),
              json::array({story.record(0, first, quartz), story.record(1, second, feldspar)}));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
}

} // namespace
} // namespace hollowfernpike
