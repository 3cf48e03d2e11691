#include "desktop/wayland/KeyboardUserOnWayland.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <cstddef>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

/// Somebody begins with an empty list and goes through all the windows.
class WindowOnWaylandTest : public testing::TestWithParam<WindowWords>,
                            protected KeyboardUserOnWayland {
protected:
    const json bare = json::array();
    const json added = json::array({shortcut(bound, target)});
    const std::filesystem::path exported = story.session().home() / "exported.json";

    WindowOnWaylandTest() : KeyboardUserOnWayland(GetParam()) {}

    void SetUp() override {
        story.startUtility();
        ASSERT_EQ(story.bindings(), bindings_);
        openManagement();
    }

    void add() {
        press(managementComes(), words.add);
        const auto editor = dialogComes(words.titles.adding);
        choose(editor, target);
        record(editor, bound);
        strikeAndLeave(words.titles.adding, "RTRN");
    }

    void giveItAnotherCombination() {
        press(managementComes(), words.edit);
        record(dialogComes(words.titles.editing), another);
        strikeAndLeave(words.titles.editing, "RTRN");
    }

    void answerDeletion(const std::string& key) {
        press(managementComes(), words.remove);
        questionComes(words.removeTarget);
        strikeAndLeave(words.titles.alert, key);
    }

    void exportAll() {
        press(managementComes(), words.exportList);
        enterPath(dialogComes(words.titles.exporting), exported);
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(exported); }));
        EXPECT_EQ(json::parse(contentsOf(exported)),
                  json::parse(contentsOf(story.shortcutsFile())));
    }

    void answerImport(const std::string& key) {
        press(managementComes(), words.importList);
        enterPath(dialogComes(words.titles.importing), exported);
        questionComes(words.importQuestion);
        strikeAndLeave(words.titles.alert, key);
    }

    /// Waits for what follows a change: the file, then the combinations.
    void expectChangeTo(const json& list) {
        EXPECT_TRUE(listBecomes(list));
        EXPECT_TRUE(story.bindsAgain(bindings_));
        bindings_ = story.bindings();
    }

private:
    std::size_t bindings_ = 1; ///< how often it has bound combinations before the change
};

TEST_P(WindowOnWaylandTest, WhatIsAddedWorksAtOnceUntilItIsDeleted) {
    add();
    expectChangeTo(added);
    EXPECT_TRUE(story.brings(target, front, bound));
    openManagement();
    answerDeletion("ESC");
    managementComes();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(listBecomes(added));
    openManagement();
    answerDeletion("RTRN");
    expectChangeTo(bare);
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_P(WindowOnWaylandTest, AnotherCombinationWorksAtOnceAndTheOldOneIsFree) {
    add();
    expectChangeTo(added);
    giveItAnotherCombination();
    expectChangeTo(json::array({shortcut(another, target)}));
    EXPECT_TRUE(story.brings(target, front, another));
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_P(WindowOnWaylandTest, WhatWasExportedComesBackAfterADeletion) {
    add();
    expectChangeTo(added);
    exportAll();
    answerDeletion("RTRN");
    expectChangeTo(bare);
    answerImport("ESC");
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(listBecomes(bare));
    openManagement();
    answerImport("RTRN");
    expectChangeTo(added);
    EXPECT_TRUE(story.brings(target, front, bound));
}

INSTANTIATE_TEST_SUITE_P(In, WindowOnWaylandTest, testing::Values(japaneseWords, englishWords),
                         [](const auto& test) { return std::string{test.param.language}; });

} // namespace
} // namespace hollowfernpike
