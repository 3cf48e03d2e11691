#include "desktop/editor/ScreenReader.h"
#include "desktop/resident/StatusMenu.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStoryTest.h"

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::string_view inEnglish = "Delete shortcut for \"Feldspar\"?";
constexpr std::string_view inJapanese = "「Feldspar」のショートカットを削除しますか？";

/// Two shortcuts are there, and a panel with the menu that switches the language.
class LanguageTest : public TwoShortcutsTest {
protected:
    StatusMenu menu{story.desktop};
    Agreement agreement{story};
    ScreenReader reader{story.desktop.bus().address()};
    xcb_window_t window = XCB_NONE;

    void SetUp() override {
        menu.startHost();
        TwoShortcutsTest::SetUp();
        ASSERT_TRUE(menu.showsItem()) << story.utility().errors();
        window = story.managementComes();
        expectBothInPlace();
    }

    void expectBothInPlace() { EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}})); }

    void speak(const std::string& language, const WindowTitles& titles) {
        menu.choose(language);
        ASSERT_TRUE(menu.becomes(language, true));
        story.titles = titles;
    }

    /// What the toolkit itself writes into a panel is in the language, too.
    void expectPanel(std::string_view cancel) {
        const auto panel = story.clickExport();
        reader.find("push button", cancel);
        story.strikeAndLeave(panel, "ESC");
        story.managementComes();
    }

    /// What the cards' buttons open is in the language as well: the editor, and the question before
    /// a deletion, which is `message`.
    void expectEditorAndDeletion(std::string_view message) {
        story.strikeAndLeave(story.clickEdit(0), "ESC");
        story.managementComes();
        const auto question = story.clickDelete(1);
        reader.find("alert message", message);
        story.strikeAndLeave(question, "ESC");
        EXPECT_EQ(story.list(), before);
    }
};

TEST_F(LanguageTest, SwitchesInTheOpenWindowAndBackAgain) {
    speak("English", englishTitles);
    EXPECT_EQ(story.managementComes(), window);
    expectBothInPlace();
    expectEditorAndDeletion(inEnglish);
    expectPanel("Cancel");
    speak("日本語", japaneseTitles);
    EXPECT_EQ(story.managementComes(), window);
    expectBothInPlace();
    expectEditorAndDeletion(inJapanese);
    expectPanel("キャンセル");
    expectBothAreLive();
}

TEST_F(LanguageTest, SwitchesInAHiddenWindowWhichComesBackWithTheSameCards) {
    story.pager.close(window);
    story.goes(window);
    speak("English", englishTitles);
    expectBothAreLive();
    story.openManagement();
    expectBothInPlace();
    expectEditorAndDeletion(inEnglish);
    expectBothAreLive();
}

} // namespace
} // namespace hollowfernpike
