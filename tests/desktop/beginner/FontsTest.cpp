#include "desktop/beginner/FirstLanguage.h"
#include "desktop/beginner/FontSettings.h"
#include "desktop/editor/EditorStory.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace hollowfernpike {
namespace {

using namespace test;

struct Look {
    int points;
    bool isEnglish;
    int scale;
};

std::ostream& operator<<(std::ostream& stream, const Look& look) {
    return stream << look.points << "pt" << (look.isEnglish ? "English" : "Japanese") << look.scale
                  << 'x';
}

bool overlap(const Place& one, const Place& other) {
    return one.x < other.x + other.width && other.x < one.x + one.width &&
           one.y < other.y + other.height && other.y < one.y + one.height;
}

bool isWithin(const Place& inner, const Place& outer) {
    return inner.x >= outer.x && inner.y >= outer.y &&
           inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

/// The windows on a desktop with another font than usual, or a larger scale.
class FontsTest : public testing::TestWithParam<Look> {
protected:
    EditorStory story;
    Application& application = story.install("An application of quite a long name");

    void SetUp() override {
        const auto [points, isEnglish, scale] = GetParam();
        setFont(story.desktop, points);
        if (isEnglish) {
            beginInEnglish(story);
        }
        story.bind(everyModifier, application);
        story.writeShortcuts();
        story.start(changed(withFontSettings, {{"QT_SCALE_FACTOR", std::to_string(scale)}}));
        story.openManagement();
    }

    /// Labels and buttons that people see.
    std::vector<Accessible> texts(const Accessible& window) {
        auto parts = story.reader.partsOf(window);
        std::erase_if(parts, [](const Accessible& part) {
            return (part.role != "label" && part.role != "push button") || part.name.empty();
        });
        return parts;
    }

    void expectEverythingInSight(const Accessible& window, std::size_t least) {
        const auto parts = texts(window);
        EXPECT_GE(parts.size(), least);
        const auto whole = story.reader.placeOf(window);
        for (const auto& part : parts) {
            const auto place = story.reader.placeOf(part);
            EXPECT_GT(place.width, 0) << part.name;
            EXPECT_TRUE(isWithin(place, whole)) << part.name;
            for (const auto& other : parts) {
                EXPECT_TRUE(part == other || !overlap(place, story.reader.placeOf(other)))
                    << part.name << " and " << other.name;
            }
        }
    }

    /// A line of the desktop's font is about that high.
    int leastHeight() const { return GetParam().points; }

    const Combination everyModifier{53, control | option | shift | command};
};

INSTANTIATE_TEST_SUITE_P(Each, FontsTest,
                         testing::Values(Look{8, false, 1}, Look{8, true, 1}, Look{24, false, 1},
                                         Look{24, true, 1}, Look{10, false, 2}, Look{10, true, 2}),
                         testing::PrintToStringParamName());

TEST_P(FontsTest, TheWindowShowsEverything) {
    const auto window = story.reader.find("frame", story.titles.management);
    expectEverythingInSight(window, 7);
    const auto badge = story.reader.find(window, "label", ' ' + shown(everyModifier) + ' ');
    const auto place = story.reader.placeOf(badge);
    EXPECT_GE(place.height, leastHeight());
    EXPECT_GE(place.width, 4 * leastHeight()) << "wins over the name";
}

TEST_P(FontsTest, TheEditorShowsEverything) {
    const auto pencil = story.reader.find("push button", GetParam().isEnglish ? "Edit" : "編集");
    story.reader.press(pencil);
    story.comes(story.titles.editing);
    const auto window = story.reader.find("dialog", story.titles.editing);
    expectEverythingInSight(window, 8);
    const auto heading = story.reader.find(window, "label",
                                           GetParam().isEnglish ? "Step 1: Select an App"
                                                                : "ステップ 1: アプリを選択");
    EXPECT_GE(story.reader.placeOf(heading).height, leastHeight());
    const auto save =
        story.reader.find(window, "push button", GetParam().isEnglish ? "Save" : "保存");
    const auto cancel =
        story.reader.find(window, "push button", GetParam().isEnglish ? "Cancel" : "キャンセル");
    EXPECT_EQ(story.reader.placeOf(save).height, story.reader.placeOf(cancel).height);
}

/// The desktop's font changes while the windows are open.
class ChangingFontTest : public testing::Test {
protected:
    using Sizes = std::vector<std::string>;

    EditorStory story;
    Application& quartz = story.install("Quartz");

    void SetUp() override {
        story.bind(bound, quartz);
        story.writeShortcuts();
    }

    void openWindows(int points) {
        setFont(story.desktop, points);
        story.start(withFontSettings);
        story.openManagement();
        story.reader.press(story.reader.find("push button", "編集"));
        story.comes(story.titles.editing);
    }

    /// How large the editor is, and all that people read and press in both windows.
    Sizes sizes() {
        const auto editor = story.reader.find("dialog", story.titles.editing);
        auto parts = story.reader.partsOf(story.reader.find("frame", story.titles.management));
        std::ranges::move(story.reader.partsOf(editor), std::back_inserter(parts));
        std::erase_if(parts, [](const Accessible& part) {
            return part.role != "label" && part.role != "push button";
        });
        parts.push_back(editor);
        Sizes all;
        for (const auto& part : parts) {
            const auto place = story.reader.placeOf(part);
            all.push_back(part.role + ' ' + part.name + ' ' + std::to_string(place.width) + 'x' +
                          std::to_string(place.height));
        }
        return all;
    }

    /// Those in windows that have known no other font.
    Sizes sizesAt(int points) {
        openWindows(points);
        return sizes();
    }

    void expectSizes(const Sizes& expected) {
        Sizes last;
        EXPECT_TRUE(waitUntil([&] { return (last = sizes()) == expected; }))
            << testing::PrintToString(last) << "\nare not\n"
            << testing::PrintToString(expected);
    }
};

TEST_F(ChangingFontTest, IsFollowedByOpenWindows) {
    constexpr int small = 8;
    constexpr int usual = 10;
    constexpr int large = 24;
    const auto inSmall = sizesAt(small);
    const auto inLarge = sizesAt(large);
    const auto inUsual = sizesAt(usual);
    EXPECT_NE(inUsual, inLarge);
    EXPECT_NE(inUsual, inSmall);
    setFont(story.desktop, large);
    expectSizes(inLarge);
    setFont(story.desktop, small);
    expectSizes(inSmall);
}

} // namespace
} // namespace hollowfernpike
