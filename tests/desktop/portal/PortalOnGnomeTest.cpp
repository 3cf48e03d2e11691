#include "desktop/gnome/GnomeSession.h"
#include "desktop/wayland/WaylandStory.h"
#include "support/OwnProcesses.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

/// GNOME without our extension of the shell: keys come by its portal, and the shell tells of no
/// windows.
class PortalOnGnomeTest : public testing::Test {
protected:
    WaylandStory story{
        std::make_unique<GnomeSession>(GnomeSettings{.hasExtension = false, .hasPortal = true})};
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
    EXPECT_TRUE(story.passes(front, another.keys()));
}

} // namespace
} // namespace hollowfernpike
