#include "desktop/windows/WindowStory.h"

#include "support/WaitUntil.h"

#include <fstream>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

const Combination first{37, control | option};
const Combination second{38, command};

/// Two shortcuts are there, and the window with their cards is in front.
class ExchangingTest : public testing::Test {
protected:
    WindowStory story;
    Application& quartz = story.open("Quartz");
    Application& feldspar = story.open("Feldspar");
    json before;

    void SetUp() override {
        story.start();
        story.openManagement();
        story.add(quartz, first);
        story.add(feldspar, second);
        before = story.list();
        story.openManagement();
    }

    void bothAreLive() {
        EXPECT_TRUE(story.brings(quartz, story.front, first));
        EXPECT_TRUE(story.brings(feldspar, story.front, second));
    }
};

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
    bothAreLive();
}

TEST_F(ExchangingTest, AnImportThatIsCalledOffChangesNothing) {
    const auto file = story.desktop.home() / "empty.json";
    std::ofstream(file) << "[]";
    story.enterPath(story.clickImport(), file);
    story.strikeAndLeave(story.comes(story.titles.alert), "ESC");
    bothAreLive();
    EXPECT_EQ(story.list(), before);
}

TEST_F(ExchangingTest, AFileThatIsNotJsonIsReportedAndKeepsTheList) {
    const auto file = story.desktop.home() / "broken.json";
    std::ofstream(file) << "no list at all";
    story.enterPath(story.clickImport(), file);
    const auto question = story.comes(story.titles.alert);
    story.keyboard.strike({"RTRN"});
    story.strikeAndLeave(story.comes(story.titles.alert, question), "RTRN");
    EXPECT_EQ(story.list(), before);
    bothAreLive();
    story.openManagement();
    story.strikeAndLeave(story.clickDelete(0), "RTRN");
    EXPECT_TRUE(story.listBecomes(json::array({before[1]}))) << "the cards are as before";
}

} // namespace
} // namespace hollowfernpike
