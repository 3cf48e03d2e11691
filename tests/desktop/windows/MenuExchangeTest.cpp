#include "desktop/resident/StatusMenu.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStoryTest.h"

#include <fstream>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

/// Two shortcuts are there, and a panel with the menu that exports and imports as well.
class MenuExchangeTest : public TwoShortcutsTest {
protected:
    StatusMenu menu{story.desktop};
    Agreement agreement{story};
    const std::filesystem::path file = story.desktop.home() / "list.json";

    void SetUp() override {
        menu.startHost();
        TwoShortcutsTest::SetUp();
        ASSERT_TRUE(menu.showsItem()) << story.utility().errors();
    }

    void exportTo(const std::filesystem::path& path) {
        menu.choose("ショートカットをエクスポート...");
        story.enterPath(story.comes(story.titles.exporting), path);
    }

    /// Up to the question.
    xcb_window_t importFrom(const std::filesystem::path& path) {
        menu.choose("ショートカットをインポート...");
        story.enterPath(story.comes(story.titles.importing), path);
        return story.comes(story.titles.alert);
    }

    /// Answers one alert and returns the next.
    xcb_window_t confirm(xcb_window_t question) {
        story.keyboard.strike({"RTRN"});
        return story.comes(story.titles.alert, question);
    }

    void expectBothInPlace() {
        EXPECT_EQ(story.list(), before);
        EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}}));
    }
};

TEST_F(MenuExchangeTest, AnExportIsToldAndHoldsTheList) {
    exportTo(file);
    story.strikeAndLeave(story.comes(story.titles.alert), "RTRN");
    EXPECT_EQ(contents(file), before);
    expectBothInPlace();
}

TEST_F(MenuExchangeTest, AnExportThatIsCalledOffIsNotTold) {
    menu.choose("ショートカットをエクスポート...");
    story.strikeAndLeave(story.comes(story.titles.exporting), "ESC");
    story.managementComes();
    expectBothInPlace();
}

TEST_F(MenuExchangeTest, AnImportIsToldAndCardsAndCombinationsFollow) {
    std::ofstream(file) << json::array({before[1]});
    story.strikeAndLeave(confirm(importFrom(file)), "RTRN");
    EXPECT_TRUE(agreement.on({{feldspar, second}}));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    EXPECT_TRUE(story.passes(story.front, first.keys()));
}

TEST_F(MenuExchangeTest, AnImportThatIsCalledOffChangesNothing) {
    std::ofstream(file) << "[]";
    story.strikeAndLeave(importFrom(file), "ESC");
    story.managementComes();
    expectBothInPlace();
    expectBothAreLive();
}

TEST_F(MenuExchangeTest, AnImportOfNoListIsToldAndChangesNothing) {
    std::ofstream(file) << "{}";
    story.strikeAndLeave(confirm(importFrom(file)), "RTRN");
    story.managementComes();
    expectBothInPlace();
    expectBothAreLive();
}

} // namespace
} // namespace hollowfernpike
