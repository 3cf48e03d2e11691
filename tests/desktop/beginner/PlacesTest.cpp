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

TEST_F(PlacesTest, ASecondEditorLeavesTheTitleOfTheFirstInSight) {
    const auto first = story.clickAdd();
    story.openManagement();
    story.keyboard.strike({"RTRN"});
    const auto second = story.comes(story.titles.adding, first);
    ASSERT_TRUE(waitUntil([&] { return story.screen.placeOf(second).width > 0; }));
    const auto one = story.screen.placeOf(first);
    const auto other = story.screen.placeOf(second);
    EXPECT_GE(other.x - one.x, 20);
    EXPECT_GE(other.y - one.y, 20);
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
};

TEST_F(LongListTest, TheAddedCardIsScrolledIntoView) {
    const auto editor = story.clickAdd();
    story.choose(editor, "Many");
    story.record(editor, third);
    story.clickSave(editor);
    const auto window = story.managementComes();
    const auto card = story.reader.find("panel", "Many " + shown(third));
    const auto place = story.screen.placeOf(window);
    EXPECT_TRUE(waitUntil([&] {
        const auto middle = story.reader.middleOf(card);
        return middle.y > place.y + 52 && middle.y < place.y + place.height;
    }));
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
                              "Launch at Login", "Quit"}) {
        mnemonics += menu.entry(label).mnemonic;
    }
    EXPECT_EQ(mnemonics, "MEILQ");
}

} // namespace
} // namespace hollowfernpike
