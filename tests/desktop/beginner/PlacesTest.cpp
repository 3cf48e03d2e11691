#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

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

    /// Whether, after some waiting, the middle of the window is about there. Frames differ above
    /// and below, and editors leave the titles of others in sight.
    testing::AssertionResult hasItsMiddleAt(xcb_window_t window, int middle) {
        constexpr int height = 800;
        constexpr int frame = 40;
        Place place;
        const auto isThere = [&] {
            place = story.screen.placeOf(window);
            return std::abs(place.x + place.width / 2 - middle) <= 5 &&
                   std::abs(place.y - (height - place.height) / 3) <= frame;
        };
        return waitUntil(isThere) ? testing::AssertionSuccess()
                                  : testing::AssertionFailure()
                                        << place.width << 'x' << place.height << '+' << place.x
                                        << '+' << place.y;
    }

    static constexpr int left = 320;
    static constexpr int right = 640 + 320;
};

TEST_F(TwoMonitorsTest, TheWindowComesWhereTheUserIsAndEditorsComeThere) {
    story.mouse.moveTo(1000, 300);
    EXPECT_TRUE(hasItsMiddleAt(story.openManagement(), right));
    story.mouse.moveTo(100, 300);
    story.keyboard.strike({"RTRN"}); // adds
    EXPECT_TRUE(hasItsMiddleAt(story.comes(story.titles.adding), right));
}

TEST_F(TwoMonitorsTest, TheWindowComesToThePrimaryMonitorIfTheUserIsThere) {
    story.mouse.moveTo(100, 300);
    EXPECT_TRUE(hasItsMiddleAt(story.openManagement(), left));
}

class PlacesTest : public EditorStoryTest {
protected:
    /// Whether, after some waiting, the program, too, takes a window of this title for the one that
    /// has the keys. Before, it may still ask for them.
    bool knowsThatItHasKeys(std::string_view title) {
        const auto isActive = [&](const Accessible& window) {
            return window.name == title && story.reader.isActive(window);
        };
        return waitUntil([&] { return std::ranges::any_of(story.reader.windows(), isActive); });
    }
};

TEST_F(PlacesTest, EditorsLeaveTheTitlesOfOthersInSight) {
    std::vector<Place> places;
    xcb_window_t editor = XCB_NONE;
    for (int count = 0; count < 3; ++count) {
        story.openManagement();
        story.keyboard.strike({"RTRN"}); // adds
        editor = story.comes(story.titles.adding, editor);
        ASSERT_TRUE(knowsThatItHasKeys(story.titles.adding)) << "else it comes back";
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

    /// Returns the window, when the mark of the added card has gone.
    xcb_window_t add() {
        const auto window = story.openManagement();
        const auto editor = story.clickAdd();
        story.choose(editor, "Many");
        story.record(editor, third);
        story.keyboard.strike({"RTRN"});
        EXPECT_TRUE(waitUntil([&] { return borderAtTheEnd(window) == 2; }));
        EXPECT_TRUE(waitUntil([&] { return borderAtTheEnd(window) == 1; }));
        return window;
    }

    static constexpr auto longerThanAMoment = 3s;
    static constexpr std::size_t listMargin = 8;
    static constexpr std::size_t heightOfACard = 52;
};

TEST_F(LongListTest, TheAddedCardIsScrolledIntoViewAndMarkedForAMoment) {
    const auto window = add();
    const auto card = story.reader.placeOf(story.reader.find("panel", "Many " + shown(third)));
    const auto whole = story.screen.placeOf(window);
    EXPECT_EQ(card.y + card.height, whole.y + whole.height - static_cast<int>(listMargin));
}

TEST_F(LongListTest, NoCardIsMarkedAfterAChangeOfTheLanguageOrADeletion) {
    const auto window = add();
    const auto isMarked = [&] { return borderAtTheEnd(window) == 2; };
    menu.choose("English");
    EXPECT_FALSE(waitUntil(isMarked, longerThanAMoment));
    story.reader.press(story.reader.find("push button", "Delete"));
    story.comes(story.titles.alert);
    story.keyboard.strike({"RTRN"});
    EXPECT_FALSE(waitUntil(isMarked, longerThanAMoment));
    EXPECT_TRUE(waitUntil([&] { return story.list().size() == 9; }));
}

} // namespace
} // namespace hollowfernpike
