#include "desktop/sway/SwayStory.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <filesystem>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Lines of the user's that bind the combination `bound`. COMMAND in them stands for what shows
/// that it was pressed, FOLDER for that of the configuration.
struct OwnBinding {
    std::string name;
    std::string lines;
    std::string included = {}; ///< lines of another file, FOLDER/more/keys
    std::string further = {};  ///< and of FOLDER/more/further

    friend std::ostream& operator<<(std::ostream& stream, const OwnBinding& own) {
        return stream << own.lines;
    }
};

/// What the user has bound for himself is his.
class ConfiguredOnSway : public testing::Test {
protected:
    SwayStory story;
    Application& front = story.open("Front");
    Application& target = story.install("Target");

    /// Has sway take the lines as the user's configuration.
    void configure(const OwnBinding& own) {
        writeFile(folder() / "more" / "keys", filled(own.included));
        writeFile(folder() / "more" / "further", filled(own.further));
        story.desktop.configure(filled(own.lines));
        story.desktop.ipc().reload();
    }

    /// Whether these keys run the user's command while `front` is in front.
    testing::AssertionResult runs(const std::vector<std::string>& keys) {
        if (const auto ready = story.switchTo(front); !ready) {
            return ready;
        }
        std::filesystem::remove(sign());
        story.keyboard.strike(keys);
        if (!waitUntil([this] { return std::filesystem::exists(sign()); })) {
            return testing::AssertionFailure() << "the user's command did not run\n"
                                               << story.utilityTells();
        }
        return story.isInFront(front);
    }
    testing::AssertionResult runs(const Combination& combination) {
        return runs(combination.keys());
    }

private:
    std::filesystem::path folder() const { return story.desktop.commonGround(); }
    std::filesystem::path sign() const { return folder() / "pressed"; }

    std::string filled(std::string text) const {
        for (const auto& [blank, value] :
             {std::pair{std::string{"COMMAND"}, "exec touch " + sign().string()},
              std::pair{std::string{"FOLDER"}, folder().string()}}) {
            for (auto at = text.find(blank); at != std::string::npos; at = text.find(blank)) {
                text.replace(at, blank.size(), value);
            }
        }
        return text;
    }
};

class ConfiguredOnSwayTest : public ConfiguredOnSway,
                             public testing::WithParamInterface<OwnBinding> {};

TEST_P(ConfiguredOnSwayTest, KeepsTheUsersCommandNowAndLater) {
    configure(GetParam());
    ASSERT_TRUE(runs(bound)) << "the configuration of this test is wrong";
    story.bind(bound, target);
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(runs(bound));
    EXPECT_EQ(target.starts(), 0);
    EXPECT_THAT(story.utilityTells(),
                testing::HasSubstr("refused, because sway or its configuration has it"));

    story.strike(another);
    EXPECT_TRUE(story.isInFront(target)) << "the others are bound";
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(runs(bound));
}

INSTANTIATE_TEST_SUITE_P(
    By, ConfiguredOnSwayTest,
    testing::Values(
        OwnBinding{"symbol", "bindsym Control+Mod1+l COMMAND\n"},
        OwnBinding{"capitalSymbol", "bindsym Control+Mod1+L COMMAND\n"},
        OwnBinding{"otherNames", "bindsym alt+ctrl+l COMMAND\n"},
        OwnBinding{"variable", "set $mod Mod1\nset $key l\nbindsym Control+$mod+$key COMMAND\n"},
        OwnBinding{"variableInAnother",
                   "set $alt Mod1\nset $both Control+$alt\nbindsym $both+l COMMAND\n"},
        OwnBinding{"toCode", "bindsym --to-code Control+Mod1+l COMMAND\n"},
        OwnBinding{"options", "bindsym --no-repeat --locked Control+Mod1+l COMMAND\n"},
        OwnBinding{"code", "bindcode Control+Mod1+46 COMMAND\n"},
        OwnBinding{"codeFirst", "bindcode 46+Mod1+Control COMMAND\n"},
        OwnBinding{"block", "bindsym {\n    Control+Mod1+l COMMAND\n}\n"},
        OwnBinding{"continuedLine", "bindsym Control+Mod1+l \\\n    COMMAND\n"},
        OwnBinding{"includedFile", "include FOLDER/more/keys\n",
                   "bindsym Control+Mod1+l COMMAND\n"},
        OwnBinding{"includedFolder", "include FOLDER/more/*\n",
                   "bindcode Control+Mod1+46 COMMAND\n"},
        OwnBinding{"includedInQuotes", "include \"FOLDER/more/keys\"\n",
                   "bindsym Control+Mod1+l COMMAND\n"},
        OwnBinding{"includedFromItsOwnFolder", "include more/keys\n", "include further\n",
                   "bindsym Control+Mod1+l COMMAND\n"},
        OwnBinding{"anyCase", "BindSym Control+Mod1+l COMMAND\n"},
        OwnBinding{"defaultMode", "mode default {\nbindsym Control+Mod1+l COMMAND\n}\n"},
        OwnBinding{"behindARemark", "# a folder \\\nbindsym Control+Mod1+l COMMAND\n"},
        OwnBinding{"braceAlone", "bindsym\n{\nControl+Mod1+l COMMAND\n}\n"},
        OwnBinding{"includedWithVariable", "set $mod Mod1\ninclude FOLDER/more/keys\n",
                   "bindsym Control+$mod+l COMMAND\n"}),
    [](const auto& own) { return own.param.name; });

class SparedOnSwayTest : public ConfiguredOnSway {};

TEST_F(SparedOnSwayTest, WhatTheUserBindsWhileItRunsIsHisAfterTheReload) {
    story.bind(bound, target);
    story.startUtility();
    const auto before = story.bindings();
    configure({"", "bindsym Control+Mod1+l COMMAND\n"});
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(runs(bound));
    EXPECT_EQ(target.starts(), 0);
}

TEST_F(SparedOnSwayTest, WhatTheUserGivesUpIsBoundAfterTheReload) {
    configure({"", "bindsym Control+Mod1+l COMMAND\n"});
    story.bind(bound, target);
    story.bind(another, front);
    story.startUtility();
    ASSERT_TRUE(runs(bound));
    const auto before = story.bindings();
    configure({"", ""});
    ASSERT_TRUE(story.bindsAgain(before));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(SparedOnSwayTest, AnIncludedFileThatCannotBeReadDoesNoHarm) {
    std::filesystem::create_symlink("loop", story.desktop.commonGround() / "loop");
    configure({"", "include FOLDER/loop\ninclude FOLDER/missing\n"
                   "bindsym Control+Mod1+l COMMAND\n"});
    story.bind(bound, target);
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(runs(bound));
    story.strike(another);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(SparedOnSwayTest, TheSwitchToAnotherTerminalIsLeftToSway) {
    story.bind({122, control | option}, target);
    story.bind(another, target);
    story.startUtility();
    EXPECT_THAT(story.utilityTells(), testing::HasSubstr("bound 1 combinations"));
    EXPECT_THAT(story.utilityTells(), testing::HasSubstr("Ctrl+Mod1+67"));
}

TEST_F(SparedOnSwayTest, TheSameKeyWithOtherModifiersIsFree) {
    configure({"", "bindsym Control+Shift+l COMMAND\nbindsym Mod1+l COMMAND\n"
                   "# bindsym Control+Mod1+l COMMAND\n"});
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(runs({"LALT", "AC09"}));
    EXPECT_TRUE(runs({"LCTL", "LFSH", "AC09"}));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(SparedOnSwayTest, StartedInAnotherModeItBindsInTheUsualOneAlone) {
    configure({"", "mode resize {\n    bindcode 9 mode default\n}\n"});
    story.sway.run("mode resize");
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, bound.keys())) << "in the other mode";
    story.keyboard.strike({"ESC"});
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(front.downs(story.keycode(bound)), 1);
}

TEST_F(SparedOnSwayTest, ASymbolIsWhereTheKeyboardWritesIt) {
    story.keyboard.use({.layouts = "de"});
    configure({"", "input * xkb_layout de\nbindsym Control+Mod1+z COMMAND\n"});
    const Combination writesZ{16, control | option};
    const Combination writesY{6, control | option};
    ASSERT_TRUE(runs(writesZ));
    story.bind(writesZ, target);
    story.bind(writesY, target);
    story.startUtility();
    EXPECT_TRUE(runs(writesZ));
    EXPECT_EQ(target.starts(), 0);
    story.strike(writesY);
    EXPECT_TRUE(story.isInFront(target));
}

} // namespace
} // namespace hollowfernpike
