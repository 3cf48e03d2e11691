#include "package/InstalledProgram.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike::test {
namespace {

constexpr Combination chosen{4, control | option};
constexpr auto launchAtLogin = "ログイン時に起動";

/// Somebody who has never seen the utility, on a desktop that starts autostart entries at login.
class FreshDesktopTest : public testing::Test {
protected:
    /// A session of this person, from logging in to logging out.
    struct Session {
        explicit Session(const Home& home) : story("openbox-session", {}, home) {
            installed::show(story.desktop);
            menu.startHost();
        }

        std::unique_ptr<ChildProcess> menuOfApplications; ///< what it starts ends with it
        Story story;
        StatusMenu menu{story.desktop};
        WindowUser user{story};
    };

    void logIn() { session.emplace(home); }

    void logOut() {
        const auto utility = installed::process(session->story.desktop);
        session.reset();
        EXPECT_TRUE(waitUntil([&] { return ::kill(utility, 0) != 0; }));
    }

    /// Starts the utility from the desktop's menu of applications. Repeats the search, because the
    /// menu may not have the keys or all entries yet.
    void findInMenu() {
        auto& keyboard = session->story.keyboard;
        session->menuOfApplications = session->story.desktop.start({"xfce4-appfinder"});
        ASSERT_TRUE(waitUntil([&] { return titleInFront() == "Application Finder"; }));
        const bool isFound = waitUntil(
            [&] {
                keyboard.strike({"LCTL", "AC01"});
                show::type(keyboard, "hollow\n");
                return waitUntil([&] { return titleInFront() == japaneseTitles.management; }, 3s);
            },
            30s);
        ASSERT_TRUE(isFound) << titleInFront();
        session->user.managementComes();
    }

    std::string titleInFront() {
        return session->story.pager.titleOf(session->story.pager.activeWindow());
    }

    InstalledPackage package;
    Home home = std::make_shared<TemporaryDirectory>();
    std::optional<Session> session;
};

TEST_F(FreshDesktopTest, AShortcutOutlivesTheSessionInWhichItWasAdded) {
    logIn();
    auto& application = session->story.install("Target");
    findInMenu();
    const auto editor = session->user.clickAdd();
    session->user.choose(editor, application.name());
    session->user.record(editor, chosen);
    session->user.clickSave(editor);
    ASSERT_TRUE(session->menu.showsItem());
    session->menu.choose(launchAtLogin);
    ASSERT_TRUE(session->menu.becomes(launchAtLogin, true));
    logOut();

    logIn();
    auto& story = session->story;
    const auto& target = story.install("Target");
    ASSERT_TRUE(story.isLive(story.grabOf(chosen)));
    ASSERT_TRUE(session->menu.showsItem());
    EXPECT_TRUE(session->menu.entry(launchAtLogin).isOn);
    story.strike(chosen);
    EXPECT_TRUE(story.isInFront(target));
}

} // namespace
} // namespace hollowfernpike::test
