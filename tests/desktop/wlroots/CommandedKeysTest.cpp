#include "desktop/wayland/OnWayland.h"
#include "desktop/wlroots/WlrootsSession.h"
#include "support/Files.h"
#include "support/Leaks.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

/// The compositor's configuration runs the program for each press.
class CommandedKeysTest : public OnWayland {
protected:
    WlrootsSession& session = static_cast<WlrootsSession&>(story.session());
    Application& front = story.open("Front");

    std::unique_ptr<ChildProcess> runPress(const std::string& combination) {
        return session.start({story.program(), "--press", combination},
                             Environment{leaksAllowed()});
    }

    /// The lines for the configuration that the utility has told, the English ones.
    std::string toldLines() {
        std::istringstream text(story.utility().errors());
        std::string lines;
        for (std::string line; std::getline(text, line);) {
            const bool isLine = line.starts_with("<keybind") || line.starts_with("bindcode");
            lines += isLine ? line + '\n' : std::string{};
        }
        return lines;
    }

    /// Whether, after some waiting, a press brings the application forward: the compositor may
    /// still be reading its configuration.
    testing::AssertionResult comesByPress(const Application& application,
                                          const Combination& combination) {
        const auto comesSoon = [&] {
            story.strike(combination);
            return waitUntil(
                [&] {
                    return story.pager.focusedProcess() != 0 && !application.copies().empty() &&
                           story.pager.focusedProcess() == application.copies().at(0);
                },
                2s);
        };
        return waitUntil(comesSoon) ? testing::AssertionSuccess()
                                    : testing::AssertionFailure() << story.utilityTells();
    }
};

TEST_F(CommandedKeysTest, PressesBringApplicationsForwardHoweverTheyAreWritten) {
    auto& target = story.open("Target");
    auto& other = story.open("Other");
    auto& last = story.open("Last");
    story.bind(bound, target);
    story.bind(another, other);
    story.bind(third, last);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(story.brings(other, front, another));
    EXPECT_TRUE(story.brings(last, front, third));
    EXPECT_EQ(target.starts() + other.starts() + last.starts(), 3);
}

TEST_F(CommandedKeysTest, AnApplicationThatDoesNotRunIsLaunchedOnce) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.brings(target, front, bound)) << "running by now";
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(CommandedKeysTest, WithTheLinesThatItTellsTheCompositorBindsTheList) {
    auto& target = story.open("Target");
    auto& quote = story.open("Quote");
    auto& arrow = story.open("Arrow");
    const Combination onQuote{39, control | shift};
    const Combination onArrow{123, command | option};
    story.bind(bound, target);
    story.bind(onQuote, quote);
    story.bind(onArrow, arrow);
    story.startUtility();
    ASSERT_TRUE(waitUntil([&] { return !toldLines().empty(); })) << story.utilityTells();
    session.desktop.bindKeys(toldLines());
    EXPECT_TRUE(comesByPress(quote, onQuote));
    EXPECT_TRUE(comesByPress(arrow, onArrow));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(CommandedKeysTest, WhatIsBoundToNothingInTheListReachesNobodyAndIsAnError) {
    story.bind(bound, front);
    story.startUtility();
    const auto unbound = runPress("Ctrl+Alt+J");
    EXPECT_EQ(unbound->wait(), 1);
    EXPECT_EQ(unbound->errors(), "⌃⌥J に割り当てられたアプリケーションはありません\n"
                                 "No application is bound to ⌃⌥J\n");
    const auto isBound = runPress("⌃⌥L");
    EXPECT_EQ(isBound->wait(), 0) << isBound->errors();
    EXPECT_EQ(isBound->output() + isBound->errors(), "");
}

TEST_F(CommandedKeysTest, AShortcutOfALaterListCountsAtOnce) {
    auto& target = story.open("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_EQ(runPress("Ctrl+Alt+J")->wait(), 1);
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, another));
}

TEST_F(CommandedKeysTest, WhatIsWrittenWronglyIsToldWithItsPlace) {
    const auto wrong = runPress("Ctrl+Qwerty");
    EXPECT_EQ(wrong->wait(), 2);
    EXPECT_THAT(wrong->errors(),
                HasSubstr("\"Ctrl+Qwerty\", character 6: there is no key \"Qwerty\""));
    EXPECT_THAT(wrong->errors(),
                HasSubstr("「Ctrl+Qwerty」の6文字目: 「Qwerty」というキーはありません"));
    EXPECT_EQ(runPress("")->wait(), 2);
}

TEST_F(CommandedKeysTest, APressWhileNobodyRunsStartsTheProgramAndIsNotLost) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.writeShortcuts();
    const auto first = runPress("⌃⌥L");
    EXPECT_TRUE(waitUntil([&] { return target.windows().size() == 1; }));
    session.closeWelcome(); // which may have come before it or after
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.brings(target, front, bound)) << "by the one that runs by now";
    EXPECT_EQ(target.starts(), 1);
    EXPECT_FALSE(first->hasEnded());
    first->signal(SIGTERM);
    EXPECT_EQ(first->wait(), 0) << first->errors();
}

TEST_F(CommandedKeysTest, AnUnboundPressWhileNobodyRunsStartsNothing) {
    story.bind(bound, front);
    story.writeShortcuts();
    const auto first = runPress("Ctrl+Alt+J");
    EXPECT_EQ(first->wait(), 1);
    EXPECT_THAT(first->errors(), HasSubstr("No application is bound to ⌃⌥J"));
}

TEST_F(CommandedKeysTest, AHeldKeyStartsOneCopyThatStaysInFront) {
    auto& slow = story.install("Slow", {.options = {"--delay", "1500"}});
    story.bind(bound, slow);
    story.startUtility();
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(slow));
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(slow));
    EXPECT_EQ(slow.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(CommandedKeysTest, WhatTheDesktopGaveTheCommandGoesToTheApplicationThatItLaunches) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.startUtility();
    const auto press =
        session.start({story.program(), "--press", "⌃⌥L"}, {{"XDG_ACTIVATION_TOKEN", "given"}});
    ASSERT_EQ(press->wait(), 0) << press->errors();
    ASSERT_TRUE(story.isInFront(target));
    const auto process = std::to_string(target.copies().at(0));
    EXPECT_THAT(contentsOf("/proc/" + process + "/environ"),
                HasSubstr("XDG_ACTIVATION_TOKEN=given"));
}

TEST_F(CommandedKeysTest, OtherKeysReachTheWindowInFront) {
    story.bind(bound, front);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, {"LCTL", "LALT", "AC05"}));
    EXPECT_TRUE(story.passes(front, {"AC05"}));
}

} // namespace
} // namespace hollowfernpike
