#include "desktop/resident/StatusMenu.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStoryTest.h"
#include "support/WaitUntil.h"

#include <fstream>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

/// Somebody begins with an empty home and a panel.
class WholeStoryTest : public WindowStoryTest {
protected:
    const Combination fourth{45, option | command};

    StatusMenu menu{story.desktop};
    Agreement agreement{story};
    Application& quartz = story.open("Quartz");
    Application& feldspar = story.open("Feldspar");
    Application& obsidian = story.install("Obsidian");

    void SetUp() override {
        menu.startHost();
        story.start();
        ASSERT_TRUE(menu.showsItem()) << story.utility().errors();
        menu.choose("ショートカット管理");
        story.managementComes();
    }

    void expectAddedAndPressed(std::vector<KnownShortcut>& shortcuts, const KnownShortcut& added) {
        story.add(added.application, added.combination);
        shortcuts.push_back(added);
        EXPECT_TRUE(agreement.on(shortcuts));
        EXPECT_TRUE(story.brings(added.application, story.front, added.combination));
        story.openManagement();
    }

    std::filesystem::path documentWith(const json& list) {
        auto file = story.desktop.home() / "document.json";
        std::ofstream(file) << list;
        return file;
    }
};

TEST_F(WholeStoryTest, FromNothingToAnImportedList) {
    std::vector<KnownShortcut> shortcuts;
    EXPECT_TRUE(agreement.on(shortcuts));
    expectAddedAndPressed(shortcuts, {quartz, first});
    expectAddedAndPressed(shortcuts, {feldspar, second});
    expectAddedAndPressed(shortcuts, {obsidian, third});

    const auto editor = story.clickEdit(1);
    story.record(editor, fourth);
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, fourth}, {obsidian, third}}));
    EXPECT_TRUE(story.passes(story.front, second.keys()));
    EXPECT_TRUE(story.brings(feldspar, story.front, fourth));

    story.openManagement();
    story.strikeAndLeave(story.clickDelete(0), "ESC");
    EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, fourth}, {obsidian, third}}));
    story.strikeAndLeave(story.clickDelete(0), "RTRN");
    EXPECT_TRUE(agreement.on({{feldspar, fourth}, {obsidian, third}}));
    EXPECT_TRUE(story.passes(story.front, first.keys()));

    const auto exported = story.desktop.home() / "exported.json";
    story.openManagement();
    story.enterPath(story.clickExport(), exported);
    EXPECT_TRUE(waitUntil([&] { return contents(exported) == story.list(); }));
    EXPECT_TRUE(agreement.on({{feldspar, fourth}, {obsidian, third}}));

    const auto document = documentWith(json::array({contents(exported).at(1)}));
    story.enterPath(story.clickImport(), document);
    story.strikeAndLeave(story.comes(story.titles.alert), "RTRN");
    EXPECT_TRUE(agreement.on({{obsidian, third}}));
    EXPECT_TRUE(story.brings(obsidian, story.front, third));
    EXPECT_TRUE(story.passes(story.front, fourth.keys()));
}

} // namespace
} // namespace hollowfernpike
