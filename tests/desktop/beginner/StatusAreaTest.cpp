#include "desktop/beginner/FirstLanguage.h"
#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "show/Panel.h"
#include "show/Typing.h"

#include <memory>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Where the utility shows its status item, and what people do with the menu there.
class StatusArea {
public:
    virtual ~StatusArea() = default;
    virtual void showsItem() = 0;
    virtual void manage() = 0;
    virtual void exportList() = 0;
    virtual void quit() = 0;
};

class NotifierHost final : public StatusArea {
public:
    explicit NotifierHost(EditorStory& story) : menu_(story.desktop) { menu_.startHost(); }

    void showsItem() override { ASSERT_TRUE(menu_.showsItem()); }
    void manage() override { menu_.choose("ショートカット管理"); }
    void exportList() override { menu_.choose("ショートカットをエクスポート..."); }
    void quit() override { menu_.choose("終了"); }

private:
    StatusMenu menu_;
};

/// Of the kind that takes in windows.
class OlderTray final : public StatusArea {
public:
    explicit OlderTray(EditorStory& story) : panel_(story, story, 1) {}

    void showsItem() override { panel_.showsSymbol(); }
    void manage() override { panel_.choose(0); }
    void exportList() override { panel_.choose(1); }
    void quit() override { panel_.choose(5); }

private:
    show::Panel panel_;
};

struct KindOfArea {
    const char* name;
    std::unique_ptr<StatusArea> (*start)(EditorStory& story);
};

std::ostream& operator<<(std::ostream& stream, const KindOfArea& kind) {
    return stream << kind.name;
}

const KindOfArea kindsOfArea[] = {
    {"NotifierHost",
     [](EditorStory& story) -> std::unique_ptr<StatusArea> {
         return std::make_unique<NotifierHost>(story);
     }},
    {"Tray",
     [](EditorStory& story) -> std::unique_ptr<StatusArea> {
         return std::make_unique<OlderTray>(story);
     }},
};

class StatusAreaTest : public testing::TestWithParam<KindOfArea> {
protected:
    EditorStory story;
    std::unique_ptr<StatusArea> area = GetParam().start(story);

    void SetUp() override {
        story.start();
        area->showsItem();
    }

    /// Opens a dialog that blocks everything else.
    xcb_window_t exportFromMenu() {
        area->exportList();
        return story.comes(story.titles.exporting);
    }
};

INSTANTIATE_TEST_SUITE_P(Each, StatusAreaTest, testing::ValuesIn(kindsOfArea),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(StatusAreaTest, BringsADialogForwardThatWasCovered) {
    const auto dialog = exportFromMenu();
    ASSERT_TRUE(story.switchTo(story.front));
    area->manage();
    EXPECT_TRUE(story.isActive(dialog));
    ASSERT_TRUE(story.switchTo(story.front));
    area->exportList();
    EXPECT_TRUE(story.isActive(dialog));
}

TEST(OlderTrayTest, TheMenusLettersChoose) {
    EditorStory story;
    beginInEnglish(story);
    show::Panel panel(story, story, 1);
    story.start();
    panel.openMenu();
    show::type(story.keyboard, "e");
    story.strikeAndLeave(story.comes(story.titles.exporting), "ESC");
    panel.openMenu();
    show::type(story.keyboard, "q");
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

TEST(NotifierHostTest, TheMenuHasMnemonicsAndRadioItems) {
    EditorStory story;
    StatusMenu menu(story.desktop);
    menu.startHost();
    story.start();
    ASSERT_TRUE(menu.showsItem());
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

TEST_P(StatusAreaTest, QuitsWhileADialogWaits) {
    exportFromMenu();
    area->quit();
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

} // namespace
} // namespace hollowfernpike
