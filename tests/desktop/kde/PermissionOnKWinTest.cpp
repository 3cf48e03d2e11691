#include "desktop/editor/ScreenReader.h"
#include "desktop/kde/KWinStory.h"

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

/// A program that runs from where it was built: no entry tells KWin what it may do.
class PermissionOnKWinTest : public testing::Test {
protected:
    static KWinSettings withoutEntry() {
        auto settings = settingsOfStories();
        settings.rights.clear();
        return settings;
    }

    KWinStory story{withoutEntry()};
    ScreenReader reader{story.desktop.bus().address()};
    Application& front = story.open("Front");
    Application& target = story.open("Target");

    void SetUp() override {
        story.bind(bound, target);
        story.writeShortcuts();
        story.launchUtility();
    }

    Accessible prompt() {
        return reader.find("alert message", "ショートカットキーを検出できません");
    }
};

TEST_F(PermissionOnKWinTest, SaysWhatIsMissing) {
    const auto window = prompt();
    EXPECT_THAT(reader.description(window), HasSubstr(story.program()));
    EXPECT_THAT(story.utilityTells(), HasSubstr("desktop entry"));
    EXPECT_TRUE(story.switchTo(front));
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_F(PermissionOnKWinTest, WritesAnEntryIfTheUserWantsItTo) {
    reader.press(reader.find(prompt(), "push button", "エントリを作成"));
    ASSERT_TRUE(story.bindsAgain(0)) << story.utilityTells();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(waitUntil([&] { return story.kwin.windows().size() == 2; })) << "without prompt";
}

TEST_F(PermissionOnKWinTest, AnEntryThatIsInstalledMeanwhileIsSeen) {
    prompt();
    story.desktop.grant(rightOfTheUtility());
    ASSERT_TRUE(story.bindsAgain(0)) << story.utilityTells();
    EXPECT_TRUE(story.brings(target, front, bound));
}

} // namespace
} // namespace hollowfernpike
