#include "desktop/gnome/GnomeStory.h"

#include <atomic>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::ThrowsMessage;

constexpr const char* extensionName = "app.hollowfernpike.Shell";
constexpr const char* extensionPath = "/app/hollowfernpike/Shell";

class ExtensionOnGnomeTest : public testing::Test {
protected:
    GnomeStory story;
    Application& target = story.open("Target");
    Application& front = story.open("Front");

    void SetUp() override {
        story.bind(bound, target);
        story.startUtility();
    }

    std::string call(const std::string& method, const std::vector<std::string>& arguments) {
        std::vector<std::string> line{extensionName, extensionPath,
                                      std::string{extensionName} + '.' + method};
        line.insert(line.end(), arguments.begin(), arguments.end());
        return callOnBus(story.desktop.environment(), line);
    }

    void tellShell(const std::string& method) {
        const auto before = story.bindings();
        callOnBus(story.desktop.environment(),
                  {"org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions." + method,
                   story.desktop.extension()});
        ASSERT_TRUE(story.bindsAgain(before)) << story.utilityTells();
    }
};

TEST_F(ExtensionOnGnomeTest, SwitchedOffItGivesTheKeysBackAndSwitchedOnItHasThemAgain) {
    ASSERT_TRUE(story.brings(target, front, bound));
    tellShell("DisableExtension");
    EXPECT_TRUE(story.passes(front, bound.keys()));
    tellShell("EnableExtension");
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(ExtensionOnGnomeTest, LeavesNothingBehindInTheShell) {
    const std::string module =
        story.desktop.hasModules()
            ? "import('resource:///org/gnome/shell/ui/inhibitShortcutsDialog.js')"
            : "Promise.resolve(imports.ui.inhibitShortcutsDialog)";
    const auto traces = [&] {
        story.desktop.evaluate(module + ".then(dialogs => global.hfpTraces = [dialogs."
                                        "InhibitShortcutsDialog.prototype._buildLayout.toString(),"
                                        "  Object.values(Main.wm._allowedKeybindings)"
                                        "    .filter(modes => modes !== 0).length]); 0");
        EXPECT_TRUE(waitUntil(
            [&] { return story.desktop.evaluate("global.hfpTraces !== undefined").get<bool>(); }));
        return story.desktop.evaluate(
            "const traces = global.hfpTraces; delete global.hfpTraces; traces");
    };
    const auto with = traces();
    tellShell("DisableExtension");
    const auto without = traces();
    EXPECT_THAT(with[0].get<std::string>(), HasSubstr("service"));
    EXPECT_THAT(without[0].get<std::string>(), Not(HasSubstr("service")));
    EXPECT_EQ(with[1].get<int>(), without[1].get<int>() + 1);
}

TEST_F(ExtensionOnGnomeTest, NoOtherProgramIsServed) {
    ASSERT_TRUE(story.brings(target, front, bound)) << "it serves the program";
    const std::vector<std::vector<std::string>> calls{{"SetAccelerators", "['<Control>0x2d']"},
                                                      {"ListWindows"},
                                                      {"WatchWindows", "true"},
                                                      {"ActivateWindows", "[1]", "0"},
                                                      {"BeginLaunch", "", "0"},
                                                      {"EndLaunch", "x"},
                                                      {"AllowOwnWindow", "Front"}};
    for (const auto& line : calls) {
        const std::vector<std::string> arguments(line.begin() + 1, line.end());
        EXPECT_THAT([&] { call(line[0], arguments); },
                    ThrowsMessage<std::runtime_error>(HasSubstr("AccessDenied")))
            << line[0];
    }
    EXPECT_TRUE(story.brings(target, front, bound)) << "the program's own still work";
}

TEST_F(ExtensionOnGnomeTest, NoOtherProgramIsTold) {
    const auto listener =
        story.session().start({"gdbus", "monitor", "--session", "--dest", extensionName});
    ASSERT_TRUE(listener->waitForLine("The name " + std::string{extensionName} + " is owned by"));
    ASSERT_TRUE(story.brings(target, front, bound));
    story.desktop.evaluate("new imports.gi.Gio.Settings({schema_id: "
                           "'org.gnome.desktop.wm.keybindings'}).set_strv('lower', []); 0");
    story.desktop.evaluate("imports.gi.Gio.DBus.session.emit_signal(null, '" +
                           std::string{extensionPath} + "', '" + extensionName +
                           "', 'Fence', null); 0");
    ASSERT_TRUE(
        listener->waitForLine(std::string{extensionPath} + ": " + extensionName + ".Fence"));
    for (const auto* signal : {"Pressed", "WindowsChanged", "KeysFreed"}) {
        EXPECT_THAT(listener->output(), Not(HasSubstr(signal)));
    }
}

TEST_F(ExtensionOnGnomeTest, WithoutTheProgramThereIsNobodyToServe) {
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    EXPECT_THAT([&] { call("ListWindows", {}); },
                ThrowsMessage<std::runtime_error>(HasSubstr("AccessDenied")));
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_F(ExtensionOnGnomeTest, WhatTheShellHasIsRefusedAndStaysTheShells) {
    const auto own = story.session().bindOwn();
    story.utility().signal(SIGTERM);
    story.utility().wait();
    story.bind(own, target);
    story.startUtility();
    EXPECT_THAT(story.utilityTells(), HasSubstr("refused"));
    EXPECT_TRUE(story.brings(target, front, bound));
    story.strike(own);
    EXPECT_TRUE(waitUntil([&] { return story.session().hasDoneOwn(); }));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(ExtensionOnGnomeTest, WhatTheUserTakesFromTheShellIsOursAtOnce) {
    story.utility().signal(SIGTERM);
    story.utility().wait();
    story.bind(story.session().bindOwn(), target);
    story.startUtility();
    ASSERT_THAT(story.utilityTells(), HasSubstr("bound 1 combinations"));
    const auto before = story.bindings();
    story.desktop.evaluate(
        "new imports.gi.Gio.Settings({schema_id: 'org.gnome.desktop.wm.keybindings'})"
        ".set_strv('switch-to-workspace-right', []); 0");
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(waitUntil([&] {
        return story.utilityTells().find("bound 2 combinations") != std::string::npos;
    })) << story.utilityTells();
    EXPECT_TRUE(story.brings(target, front, story.session().bindOwn()));
}

} // namespace
} // namespace hollowfernpike
