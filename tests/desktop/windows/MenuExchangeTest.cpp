#include "desktop/editor/ScreenReader.h"
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
    ScreenReader reader{story.desktop.bus().address()};
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

    /// Imports as far as the question.
    xcb_window_t importFrom(const std::filesystem::path& path) {
        menu.choose("ショートカットをインポート...");
        story.enterPath(story.comes(story.titles.importing), path);
        return hear("ショートカットをインポートしますか？");
    }

    /// The alert other than `last` that says this.
    xcb_window_t hear(std::string_view message, xcb_window_t last = XCB_NONE) {
        const auto alert = story.comes(story.titles.alert, last);
        reader.find("alert message", message);
        return alert;
    }

    /// Answers the question; the alert that follows says this and is sent away.
    void confirm(xcb_window_t question, std::string_view message) {
        story.keyboard.strike({"RTRN"});
        story.strikeAndLeave(hear(message, question), "RTRN");
    }

    void expectBothInPlace() {
        EXPECT_EQ(story.list(), before);
        EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}}));
    }
};

TEST_F(MenuExchangeTest, AnExportIsToldAndHoldsTheList) {
    exportTo(file);
    story.strikeAndLeave(hear("ショートカットをエクスポートしました。"), "RTRN");
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
    confirm(importFrom(file), "ショートカットをインポートしました。");
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
    confirm(importFrom(file), "ファイル形式が正しくありません。");
    story.managementComes();
    expectBothInPlace();
    expectBothAreLive();
}

} // namespace
} // namespace hollowfernpike
