#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "support/WaitUntil.h"

#include <algorithm>

namespace hollowfernpike {
namespace {

using namespace test;

/// The display has two monitors side by side, each 640 wide; the first is the primary one.
class TwoMonitorsTest : public testing::Test {
protected:
    EditorStory story;

    void SetUp() override {
        story.run({"xrandr", "--setmonitor", "*left", "640/169x800/211+0+0", "screen"});
        story.run({"xrandr", "--setmonitor", "right", "640/169x800/211+640+0", "none"});
        story.start();
    }

    bool isOnTheRight(xcb_window_t window) { return story.screen.placeOf(window).x >= 640; }
};

TEST_F(TwoMonitorsTest, TheWindowComesWhereTheUserIsAndEditorsComeThere) {
    story.mouse.moveTo(1000, 300);
    EXPECT_TRUE(isOnTheRight(story.openManagement()));
    story.mouse.moveTo(100, 300);
    story.keyboard.strike({"RTRN"}); // adds
    EXPECT_TRUE(isOnTheRight(story.comes(story.titles.adding)));
}

TEST_F(TwoMonitorsTest, TheWindowComesToThePrimaryMonitorIfTheUserIsThere) {
    story.mouse.moveTo(100, 300);
    EXPECT_FALSE(isOnTheRight(story.openManagement()));
}

class PlacesTest : public EditorStoryTest {};

TEST_F(PlacesTest, EditorsLeaveTheTitlesOfOthersInSight) {
    std::vector<Place> places;
    xcb_window_t editor = XCB_NONE;
    for (int count = 0; count < 3; ++count) {
        story.openManagement();
        story.keyboard.strike({"RTRN"}); // adds
        editor = story.comes(story.titles.adding, editor);
        ASSERT_TRUE(waitUntil([&] { return story.screen.placeOf(editor).width > 0; }));
        places.push_back(story.screen.placeOf(editor));
    }
    for (std::size_t later = 1; later < places.size(); ++later) {
        EXPECT_GE(places[later].x - places[later - 1].x, 20);
        EXPECT_GE(places[later].y - places[later - 1].y, 20);
    }
}

/// More shortcuts than the window shows.
class LongListTest : public testing::Test {
protected:
    EditorStory story;
    StatusMenu menu{story.desktop};

    void SetUp() override {
        auto& many = story.install("Many");
        for (std::uint16_t key = 0; key < 9; ++key) {
            story.bind({key, control | option | shift}, many);
        }
        menu.startHost();
        story.startUtility();
        ASSERT_TRUE(menu.showsItem());
        story.openManagement();
    }

    /// How thick the border is of a card that lies at the lower end of the window, where an editor
    /// does not cover it; none if there is no such card.
    int borderAtTheEnd(xcb_window_t window) {
        constexpr int betweenIconAndName = 66;
        constexpr std::size_t thickest = 3;
        const auto column = story.screen.column(window, betweenIconAndName);
        if (column.size() <= listMargin + heightOfACard) {
            return 0;
        }
        const auto cardBegins = column.size() - listMargin - heightOfACard;
        const auto ground = column.at(cardBegins - 1);
        const auto inside = column.at(cardBegins + thickest);
        int border = 0;
        for (std::size_t row = 0; row < thickest; ++row) {
            const auto upper = column.at(cardBegins + row);
            const auto lower = column.at(column.size() - listMargin - 1 - row);
            border += upper == lower && upper != ground && upper != inside ? 1 : 0;
        }
        return column.back() == ground ? border : 0;
    }

    static constexpr std::size_t listMargin = 8;
    static constexpr std::size_t heightOfACard = 52;
};

TEST_F(LongListTest, TheAddedCardIsScrolledIntoViewAndMarkedForAMoment) {
    const auto window = story.openManagement();
    const auto editor = story.clickAdd();
    story.choose(editor, "Many");
    story.record(editor, third);
    story.keyboard.strike({"RTRN"});
    EXPECT_TRUE(waitUntil([&] { return borderAtTheEnd(window) == 2; }));
    EXPECT_TRUE(waitUntil([&] { return borderAtTheEnd(window) == 1; }));
    const auto card = story.reader.placeOf(story.reader.find("panel", "Many " + shown(third)));
    const auto whole = story.screen.placeOf(window);
    EXPECT_EQ(card.y + card.height, whole.y + whole.height - static_cast<int>(listMargin));
}

TEST_F(LongListTest, TheMenuHasMnemonicsAndRadioItems) {
    EXPECT_TRUE(menu.entry("English").isRadio);
    EXPECT_TRUE(menu.entry("日本語").isRadio);
    EXPECT_FALSE(menu.entry("ログイン時に起動").isRadio);
    menu.choose("English");
    ASSERT_TRUE(menu.becomes("English", true));
    EXPECT_FALSE(menu.entry("日本語").isOn);
    std::string mnemonics;
    for (const char* label : {"Manage Shortcuts", "Export Shortcuts...", "Import Shortcuts...",
                              "Launch at Login", "言語 / Language", "Quit"}) {
        mnemonics += menu.entry(label).mnemonic;
    }
    EXPECT_EQ(mnemonics, "MEIaLQ");
}

} // namespace
} // namespace hollowfernpike
