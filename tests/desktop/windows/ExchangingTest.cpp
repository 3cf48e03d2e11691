#include "desktop/windows/WindowStoryTest.h"

#include "support/WaitUntil.h"

#include <fstream>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

using ExchangingTest = TwoShortcutsTest;

TEST_F(ExchangingTest, WhatWasExportedComesBackAfterADeletion) {
    const auto file = story.desktop.home() / "kept.json";
    story.enterPath(story.clickExport(), file);
    ASSERT_TRUE(waitUntil([&] { return contents(file) == before; }));
    story.openManagement();
    story.strikeAndLeave(story.clickDelete(1), "RTRN");
    ASSERT_TRUE(story.listBecomes(json::array({before[0]})));
    EXPECT_TRUE(story.isFree(second));
    EXPECT_TRUE(story.passes(story.front, second.keys()));
    story.openManagement();
    story.enterPath(story.clickImport(), file);
    story.strikeAndLeave(story.comes(story.titles.alert), "RTRN");
    EXPECT_TRUE(story.listBecomes(before));
    expectBothAreLive();
}

TEST_F(ExchangingTest, AnImportThatIsCalledOffChangesNothing) {
    const auto file = story.desktop.home() / "empty.json";
    std::ofstream(file) << "[]";
    story.enterPath(story.clickImport(), file);
    story.strikeAndLeave(story.comes(story.titles.alert), "ESC");
    expectBothAreLive();
    EXPECT_EQ(story.list(), before);
}

} // namespace
} // namespace hollowfernpike
