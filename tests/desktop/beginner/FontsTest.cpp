#include "desktop/editor/EditorStory.h"
#include "support/WriteFile.h"

#include <algorithm>
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
        const auto font = std::to_string(points) + ",-1,5,50,0,0,0,0,0\n";
        writeFile(story.desktop.home() / ".config/kdeglobals",
                  "[General]\nfont=DejaVu Sans," + font + "fixed=DejaVu Sans Mono," + font +
                      "\n[KDE]\nwidgetStyle=Fusion\n");
        writeFile(story.desktop.home() / ".config/app.hollowfernpike.Hollowfernpike.conf",
                  std::string("[General]\nAppLanguage=") + (isEnglish ? "en" : "ja") + '\n');
        story.titles = isEnglish ? englishTitles : japaneseTitles;
        story.bind(everyModifier, application);
        story.writeShortcuts();
        story.start({{"XDG_CURRENT_DESKTOP", "KDE"},
                     {"KDE_SESSION_VERSION", "5"},
                     {"QT_SCALE_FACTOR", std::to_string(scale)}});
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

} // namespace
} // namespace hollowfernpike
