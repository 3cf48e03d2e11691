#include "desktop/editor/ScreenReader.h"
#include "desktop/gnome/GnomeSession.h"
#include "desktop/wayland/WaylandStory.h"
#include "desktop/windows/WindowTitles.h"
#include "support/Leaks.h"
#include "support/SessionBus.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

/// The bus knows the portal, its other side and the dialog.
GnomeSettings withPortal() {
    const std::filesystem::path services = "dbus-1/services";
    return {.hasExtension = false,
            .shown = {services / "org.freedesktop.portal.Desktop.service",
                      services / "org.freedesktop.impl.portal.PermissionStore.service",
                      services / "org.freedesktop.impl.portal.desktop.gnome.service",
                      services / "org.gnome.Settings.GlobalShortcutsProvider.service",
                      "xdg-desktop-portal"}};
}

/// GNOME without our extension of the shell: keys come by its portal, and the shell tells of no
/// windows.
class PortalOnGnomeTest : public testing::Test {
protected:
    WaylandStory story{std::make_unique<GnomeSession>(withPortal())};
    Application& front = story.open("Front");

    static constexpr auto entry = "app.hollowfernpike.Hollowfernpike";

    void installEntry() {
        writeFile(story.session().applications() / (std::string{entry} + ".desktop"),
                  "[Desktop Entry]\nType=Application\nName=Hollowfernpike\nExec=" +
                      story.program() + "\n");
    }

    /// Starts the utility, which asks for the combinations of the list.
    void start() {
        installEntry();
        story.writeShortcuts();
        story.launchUtility();
    }

    bool dialogIsOpen() {
        for (const auto& window : story.pager.windows()) {
            if (window.applicationId.find("GlobalShortcuts") != std::string::npos ||
                window.applicationId.find("global-shortcuts") != std::string::npos) {
                return window.isFocused;
            }
        }
        return false;
    }

    testing::AssertionResult answerDialog(bool isGranted) {
        if (!waitUntil([&] { return dialogIsOpen(); })) {
            auto failure = testing::AssertionFailure() << "no dialog\n" << story.utilityTells();
            for (const auto& window : story.pager.windows()) {
                failure << window.applicationId << " " << window.title << '\n';
            }
            return failure;
        }
        if (isGranted) {
            story.keyboard.strike({"LFSH", "TAB"});
            story.keyboard.strike({"RTRN"});
        } else {
            story.keyboard.strike({"ESC"});
        }
        return waitUntil([&] { return !dialogIsOpen(); })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "the dialog stays";
    }

    /// Kills the portal's process, which the session bus has started.
    bool killPortal() {
        const auto answer = callOnBus(story.session().environment(),
                                      {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus.GetConnectionUnixProcessID",
                                       "org.freedesktop.portal.Desktop"}); // "(uint32 123,)"
        const auto number = answer.find_first_of("0123456789", answer.find(' '));
        return ::kill(static_cast<pid_t>(std::stoi(answer.substr(number))), SIGKILL) == 0;
    }

    testing::AssertionResult hasBound(std::size_t count) {
        const auto line = "bound " + std::to_string(count) + " combinations";
        return waitUntil([&] { return story.utility().errors().find(line) != std::string::npos; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << story.utilityTells();
    }
};

TEST_F(PortalOnGnomeTest, WhatTheUserGrantsLaunchesOnceAndIsSwallowed) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    start();
    ASSERT_TRUE(answerDialog(true));
    ASSERT_TRUE(hasBound(1));
    ASSERT_TRUE(story.switchTo(front));
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_TRUE(story.passes(front, another.keys()));
}

TEST_F(PortalOnGnomeTest, WhatWasGrantedIsNotAskedForAgain) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    start();
    ASSERT_TRUE(answerDialog(true));
    ASSERT_TRUE(hasBound(1));
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    story.launchUtility();
    ASSERT_TRUE(hasBound(1));
    EXPECT_FALSE(dialogIsOpen());
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(PortalOnGnomeTest, WhatTheUserDeniesCountsAsRefusedAndReachesTheWindowInFront) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    start();
    ASSERT_TRUE(answerDialog(false));
    ASSERT_TRUE(hasBound(0));
    EXPECT_THAT(story.utility().errors(), HasSubstr("not granted by the desktop: 37-786432"));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_EQ(target.starts(), 0);
}

TEST_F(PortalOnGnomeTest, AfterThePortalHasEndedTheCombinationsAreBoundAgain) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    start();
    ASSERT_TRUE(answerDialog(true));
    ASSERT_TRUE(hasBound(1));
    ASSERT_TRUE(killPortal());
    ASSERT_TRUE(waitUntil([&] {
        const auto& told = story.utility().errors();
        const auto end = told.find("the portal binds nothing any more");
        return end != std::string::npos && told.find(" bound 1 ", end) != std::string::npos;
    })) << story.utilityTells();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(PortalOnGnomeTest, AnApplicationThatRunsIsAskedByItsEntryToShowItself) {
    auto& single = story.open("Single", {.options = {"--single"}});
    story.pager.close(single.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return !story.pager.windowOf(single.copies().at(0)); }));
    story.bind(bound, single);
    start();
    ASSERT_TRUE(answerDialog(true));
    ASSERT_TRUE(hasBound(1));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return single.windows().size() == 2; }));
    EXPECT_TRUE(waitUntil([&] { return single.copies().size() == 1; }));
}

TEST_F(PortalOnGnomeTest, WhatIsDeletedIsGivenBackAndTheRestStays) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.bind(another, target);
    start();
    ASSERT_TRUE(answerDialog(true));
    ASSERT_TRUE(hasBound(2));
    ScreenReader reader(story.session().bus().address());
    const auto second = story.session().start({story.program()}, Environment{leaksAllowed()});
    ASSERT_EQ(second->wait(), 0) << second->errors();
    const auto window = reader.find("frame", japaneseTitles.management);
    const auto before = story.bindings();
    reader.press(reader.find(window, "push button", "削除")); // of the first card
    const auto question =
        reader.find("alert message", "「Target」のショートカットを削除しますか？");
    reader.press(reader.find(question, "push button", "削除"));
    ASSERT_TRUE(story.bindsAgain(before));
    ASSERT_TRUE(hasBound(1));
    EXPECT_FALSE(dialogIsOpen());
    EXPECT_TRUE(story.passes(front, bound.keys()));
    story.strike(another);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(PortalOnGnomeTest, WithoutItsEntryTheProgramSaysWhatIsMissing) {
    story.bind(bound, story.install("Target"));
    story.writeShortcuts();
    story.launchUtility();
    EXPECT_TRUE(waitUntil([&] {
        return story.utility().errors().find(
                   "there is no app.hollowfernpike.Hollowfernpike.desktop") != std::string::npos;
    })) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
