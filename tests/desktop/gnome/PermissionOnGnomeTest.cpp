#include "desktop/editor/ScreenReader.h"
#include "desktop/gnome/GnomeStory.h"
#include "desktop/windows/WindowTitles.h"

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

/// The program as it begins where the shell does not run the extension.
class PermissionOnGnomeTest : public testing::Test {
protected:
    void begin(const GnomeSettings& settings) {
        story_ = std::make_unique<GnomeStory>(settings);
        reader_ = std::make_unique<ScreenReader>(story().desktop.bus().address());
        story().bind(bound, story().open("Target"));
        story().writeShortcuts();
    }

    GnomeStory& story() { return *story_; }

    Accessible prompt() {
        return reader_->find("alert message", "ショートカットキーを検出できません");
    }

    std::string words() {
        const auto window = prompt();
        return reader_->description(window);
    }

    /// Of the utility's windows, back to front.
    std::vector<std::string> ownTitles() {
        std::vector<std::string> titles;
        for (const auto& window : story().pager.windows()) {
            if (window.process == story().utility().pid()) {
                titles.push_back(window.title);
            }
        }
        return titles;
    }

    bool hasOwner(const std::string& name) {
        return callOnBus(story().desktop.environment(),
                         {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                          "org.freedesktop.DBus.NameHasOwner", name}) == "(true,)\n";
    }

    void clickRemedy() {
        const auto window = prompt();
        reader_->press(reader_->find(window, "push button", "拡張機能を有効にする"));
    }

    void disableExtension() {
        callOnBus(story().desktop.environment(),
                  {"org.gnome.Shell", "/org/gnome/Shell",
                   "org.gnome.Shell.Extensions.DisableExtension", story().desktop.extension()});
        ASSERT_TRUE(waitUntil([&] { return !hasOwner("app.hollowfernpike.Shell"); }));
    }

    void expectToWork() {
        ASSERT_TRUE(story().bindsAgain(0)) << story().utilityTells();
        auto& front = story().open("Front");
        story().strike(bound);
        EXPECT_TRUE(waitUntil([&] {
            const auto window = story().pager.windowOf(story().pager.focusedProcess());
            return window && window->title == "Target";
        }));
        EXPECT_FALSE(front.copies().empty());
    }

    std::unique_ptr<GnomeStory> story_;
    std::unique_ptr<ScreenReader> reader_;
};

TEST_F(PermissionOnGnomeTest, OneClickEnablesTheExtension) {
    begin({.enablesExtension = false});
    story().launchUtility();
    EXPECT_THAT(words(), HasSubstr("拡張機能"));
    clickRemedy();
    expectToWork();
    EXPECT_TRUE(waitUntil([&] { return story().pager.windows().size() == 2; })) << "no prompt";
}

// Without the extension's word it looks every five seconds. By chance, that may be right after the
// click, but not time after time.
TEST_F(PermissionOnGnomeTest, ItIsLiveAtOnceAfterTheClick) {
    begin({.enablesExtension = false});
    constexpr int clicks = 3;
    for (int click = 1; click <= clicks; ++click) {
        story().launchUtility();
        clickRemedy();
        const auto clicked = std::chrono::steady_clock::now();
        ASSERT_TRUE(story().bindsAgain(0)) << story().utilityTells();
        if (std::chrono::steady_clock::now() - clicked < 1s) {
            return;
        }
        story().utility().signal(SIGTERM);
        ASSERT_TRUE(story().utility().wait());
        disableExtension();
    }
    FAIL() << "it took a second after each click";
}

TEST_F(PermissionOnGnomeTest, TheKeysAreTheWindowsAsLongAsItIsNotEnabled) {
    begin({.enablesExtension = false});
    story().launchUtility();
    prompt();
    auto& front = story().open("Front");
    EXPECT_TRUE(story().passes(front, bound.keys()));
}

TEST_F(PermissionOnGnomeTest, TheQuestionStaysInFrontOfTheManagementWindow) {
    begin({.enablesExtension = false});
    story().launchUtility();
    prompt();
    story().desktop.start({story().program()})->wait();
    const std::string management{japaneseTitles.management};
    const std::string question{japaneseTitles.alert};
    const std::vector both{management, question};
    EXPECT_TRUE(waitUntil([&] { return ownTitles() == both; }))
        << testing::PrintToString(ownTitles());
    story().pager.closeTitled(management);
    EXPECT_TRUE(waitUntil([&] { return ownTitles() == std::vector{question}; }))
        << testing::PrintToString(ownTitles());
}

TEST_F(PermissionOnGnomeTest, AnExtensionThatCameAfterTheLoginNeedsAnother) {
    begin({.hasExtension = false, .enablesExtension = false});
    story().desktop.installExtension();
    story().launchUtility();
    EXPECT_THAT(words(), HasSubstr("ログアウト"));
    EXPECT_THAT(story().utilityTells(), HasSubstr("Log out and in again"));
    EXPECT_FALSE(story().utility().hasEnded());
}

TEST_F(PermissionOnGnomeTest, AfterThatLoginOneClickIsEnough) {
    begin({.hasExtension = false, .enablesExtension = false});
    story().desktop.installExtension();
    story().restart();
    story().open("Again");
    story().launchUtility();
    clickRemedy();
    EXPECT_TRUE(story().bindsAgain(0)) << story().utilityTells();
}

TEST_F(PermissionOnGnomeTest, WhereAllExtensionsAreOffItSaysWhereToSwitchThemOn) {
    begin({.allowsExtensions = false});
    story().launchUtility();
    EXPECT_THAT(words(), HasSubstr("「拡張機能」アプリ"));
    story().desktop.evaluate("global.settings.set_boolean('disable-user-extensions', false); 0");
    expectToWork();
}

TEST_F(PermissionOnGnomeTest, AnotherProgramWithTheNameOfTheExtensionIsNotBelieved) {
    begin({.enablesExtension = false});
    const auto impostor = g_bus_own_name_on_connection(
        story().desktop.busConnection(), "app.hollowfernpike.Shell", G_BUS_NAME_OWNER_FLAGS_NONE,
        nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(waitUntil([&] { return hasOwner("app.hollowfernpike.Shell"); }));
    story().launchUtility();
    EXPECT_THAT(words(), HasSubstr("拡張機能"));
    EXPECT_EQ(story().bindings(), 0) << story().utilityTells();
    g_bus_unown_name(impostor);
}

} // namespace
} // namespace hollowfernpike
