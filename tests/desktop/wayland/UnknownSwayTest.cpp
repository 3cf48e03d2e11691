#include "desktop/sway/KeyboardUserOnSway.h"
#include "desktop/wayland/KeylessWords.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

/// Sway, but the program's environment does not name its socket.
class SwayWithoutItsSocket : public testing::Test, protected KeyboardUserOnSway {
protected:
    const Environment unnamed{{"SWAYSOCK", std::nullopt}, {"XDG_CURRENT_DESKTOP", "Elsewhere"}};

    void launch(const Environment& changes) {
        story.bind(bound, target);
        story.writeShortcuts();
        story.launchUtility(changes);
    }

    /// A way to the socket where sway makes it by itself, with this process in the name.
    void linkSocket(pid_t process) const {
        const auto& session = onSway.desktop.environment();
        std::filesystem::create_symlink(
            session.at("SWAYSOCK").value(),
            std::filesystem::path(session.at("XDG_RUNTIME_DIR").value()) /
                ("sway-ipc." + std::to_string(::getuid()) + '.' + std::to_string(process) +
                 ".sock"));
    }

    /// Whether, after some waiting, the program has written these words.
    testing::AssertionResult tells(const KeylessWords& expected) {
        const auto areThere = [&] {
            const auto& errors = story.utility().errors();
            return timesIn(errors, expected.japanese) > 0 && timesIn(errors, expected.english) > 0;
        };
        return waitUntil(areThere) ? testing::AssertionSuccess()
                                   : testing::AssertionFailure() << story.utilityTells();
    }
};

/// There is no socket where sway would make it by itself, either. Here keys can be struck and
/// windows be seen, other than on a compositor without such services.
class UnknownSwayTest : public SwayWithoutItsSocket {
protected:
    void start() {
        launch(unnamed);
        ASSERT_TRUE(tells(keylessOnSway));
    }

    Accessible startAgain() {
        const auto second = onSway.desktop.start({HFP_PROGRAM}, unnamed);
        EXPECT_EQ(second->wait(), 0) << second->errors();
        return managementComes();
    }

    void end() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    }
};

// A window that comes takes the keys, whatever somebody is typing.
TEST_F(UnknownSwayTest, DismissedLinesDoNotComeBack) {
    constexpr auto longerThanItWaits = 8s;
    start();
    ASSERT_TRUE(waitUntil([this] { return hasWindow(std::string{words.titles.alert}); }));
    story.pager.close(story.utility().pid());
    ASSERT_TRUE(isGone(std::string{words.titles.alert}));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_FALSE(waitUntil([this] { return hasWindow(std::string{words.titles.alert}); },
                           longerThanItWaits));
    EXPECT_TRUE(story.getsKeys(front));
    end();
    EXPECT_EQ(timesIn(story.utility().errors(), keylessOnSway.japanese), 1) << story.utilityTells();
    EXPECT_EQ(timesIn(story.utility().errors(), keylessOnSway.english), 1) << story.utilityTells();
}

TEST_F(UnknownSwayTest, ItSwallowsNothing) {
    start();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.passes(front, another.keys()));
    EXPECT_EQ(target.starts(), 0);
    onSway.sway.run("bindcode Control+Mod1+46 workspace sways");
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return story.pager.workspace() == "sways"; }));
    end();
}

TEST_F(UnknownSwayTest, InTheWindowOfASecondStartShortcutsCanBeExportedAndDeleted) {
    start();
    press(startAgain(), words.exportList);
    const auto file = onSway.desktop.home() / "list.json";
    enterPath(dialogComes(words.titles.exporting), file);
    const auto list = json::array({shortcut(bound, target)});
    EXPECT_TRUE(waitUntil([&] { return shortcutsIn(file) == list; }));
    press(managementComes(), words.remove);
    questionComes(words.removeTarget);
    story.keyboard.strike({"RTRN"});
    EXPECT_TRUE(listBecomes(json::array()));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    end();
}

TEST_F(UnknownSwayTest, TheLinesFollowTheList) {
    start();
    const auto lines = [this] {
        const auto window =
            reader.find("dialog", "ショートカットキーをデスクトップに設定してください");
        return reader.text(reader.find(window, "text", "設定に書く行"));
    };
    const auto before = lines();
    EXPECT_NE(before.find("bindcode --no-repeat Ctrl+Mod1+46 exec"), std::string::npos) << before;
    press(startAgain(), words.edit);
    const auto editor = dialogComes(words.titles.editing);
    record(editor, another);
    strikeAndLeave(words.titles.editing, "RTRN");
    EXPECT_TRUE(listBecomes(json::array({shortcut(another, target)})));
    EXPECT_TRUE(waitUntil([&] {
        return lines().find("bindcode --no-repeat Ctrl+Mod1+44 exec") != std::string::npos;
    })) << lines();
    end();
}

TEST_F(UnknownSwayTest, CopiedLinesAreNotToldAgain) {
    start();
    const auto window = reader.find("dialog", "ショートカットキーをデスクトップに設定してください");
    press(window, "行をコピー");
    const auto settings = story.session().home() / ".config/app.hollowfernpike.Hollowfernpike.conf";
    ASSERT_TRUE(
        waitUntil([&] { return contentsOf(settings).find("Ctrl+Mod1+46") != std::string::npos; }));
    end();
    launch(unnamed);
    ASSERT_TRUE(story.bindsAgain(0));
    startAgain();
    EXPECT_EQ(timesIn(story.utility().errors(), keylessOnSway.english), 0) << story.utilityTells();
    EXPECT_FALSE(hasWindow(std::string{words.titles.alert}));
    end();
}

TEST_F(UnknownSwayTest, AClosedWindowComesBackWithTheNextStart) {
    start();
    for (int round = 0; round < 2; ++round) {
        startAgain();
        onSway.sway.run("[title=\"" + std::string{managementTitle} + "\"] kill");
        ASSERT_TRUE(isGone(managementTitle));
    }
    startAgain();
    end();
}

/// The socket is where sway makes it by itself: programs that the session bus has started find it
/// there.
class SwayThatIsFoundTest : public SwayWithoutItsSocket {};

TEST_F(SwayThatIsFoundTest, ABoundPressWorks) {
    linkSocket(onSway.desktop.compositor().pid());
    launch(unnamed);
    ASSERT_TRUE(story.bindsAgain(0));
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(story.passes(front, another.keys()));
}

TEST_F(SwayThatIsFoundTest, ABoundPressWorksIfTheNameIsEmpty) {
    linkSocket(onSway.desktop.compositor().pid());
    launch({{"SWAYSOCK", ""}});
    ASSERT_TRUE(story.bindsAgain(0));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SwayThatIsFoundTest, AnotherOfTheSameUserIsNotTakenForIt) {
    linkSocket(onSway.desktop.bus().daemon().pid());
    launch(unnamed);
    ASSERT_TRUE(tells(keylessOnSway));
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

} // namespace
} // namespace hollowfernpike
