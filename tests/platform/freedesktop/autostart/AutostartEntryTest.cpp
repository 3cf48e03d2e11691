#include "platform/freedesktop/autostart/LoginItem.h"

#include "platform/freedesktop/autostart/LoginItemTest.h"
#include "platform/freedesktop/entries/GlibPointers.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gio/gdesktopappinfo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

using EntryAsRead = std::unique_ptr<GDesktopAppInfo, freedesktop::Releaser<&g_object_unref>>;

class AutostartEntryTest : public LoginItemTest {
protected:
    EntryAsRead readBack() const {
        return EntryAsRead{g_desktop_app_info_new_from_filename(file().c_str())};
    }

    std::string textOf(const char* key) const {
        const auto info = readBack();
        const freedesktop::TextPointer text(info ? g_desktop_app_info_get_string(info.get(), key)
                                                 : nullptr);
        return freedesktop::orEmpty(text.get());
    }

    /// Registers a program at this path below the home and lets GIO start it as a session would.
    void registerAndStart(const fs::path& relative) {
        const auto program = home_.path() / relative;
        home_.write(program, "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$0\" > \"$HOME/started.new\"\n"
                             "mv \"$HOME/started.new\" \"$HOME/started\"\n");
        fs::permissions(program, fs::perms::owner_all);
        fs::remove(home_.path() / "started");
        freedesktop::LoginItem item(program);
        item.registerItem();
        ASSERT_EQ(item.status(), LoginItemStatus::enabled) << program;
        const auto info = readBack();
        ASSERT_TRUE(info) << contentsOf(file());
        ASSERT_TRUE(g_app_info_launch(G_APP_INFO(info.get()), nullptr, nullptr, nullptr))
            << contentsOf(file());
        ASSERT_TRUE(waitUntil([&] { return fs::exists(home_.path() / "started"); })) << program;
        EXPECT_EQ(contentsOf(home_.path() / "started"), "0\n" + program.string() + '\n');
        fs::remove(program);
        EXPECT_EQ(item.status(), LoginItemStatus::notFound) << program;
    }
};

// --- the text ---

TEST_F(AutostartEntryTest, TheEntrySaysWhatDesktopsAskFor) {
    item_.registerItem();
    EXPECT_EQ(textOf("Type"), "Application");
    EXPECT_EQ(textOf("Name"), "Hollowfernpike");
    EXPECT_EQ(textOf("Exec"), "/bin/true");
    EXPECT_EQ(textOf("Icon"), "app.hollowfernpike.Hollowfernpike");
    EXPECT_EQ(textOf("Terminal"), "false");
    EXPECT_EQ(textOf("X-GNOME-Autostart-enabled"), "true");
    EXPECT_EQ(textOf("X-KDE-autostart-after"), "panel");
    EXPECT_EQ(textOf("X-LXQt-Need-Tray"), "true");
    EXPECT_EQ(textOf("Hidden"), "");
    EXPECT_THAT(contentsOf(file()), AllOf(HasSubstr("\nName[ja]="), HasSubstr("\nComment="),
                                          HasSubstr("\nComment[ja]=キー")));
    // A phase would keep the session manager from starting it at all.
    EXPECT_THAT(contentsOf(file()), Not(HasSubstr("X-GNOME-Autostart-Phase")));
}

TEST_F(AutostartEntryTest, TheProgramRunsWhateverItsPathIs) {
    registerAndStart("plain/hollowfernpike");
    registerAndStart("with spaces and\ttabs/hollow fern pike");
    registerAndStart("\"double\" 'single'/it's");
    registerAndStart("$HOME ${PATH} `id` $(id)/a");
    registerAndStart("100% %f %U %%/a");
    registerAndStart(R"(back\slash \\ \n \"/a)");
    registerAndStart("アプリケーション/ピン é");
    registerAndStart("reserved ~<>|&;*?#()[]{}!^/a");
    registerAndStart("a=b/c=d");
    registerAndStart("new\nline/a");
    registerAndStart(" /-leading and trailing ");
}

TEST_F(AutostartEntryTest, APathThatNoEntryCanNameIsRefused) {
    for (const std::string program : {"/caf\xE9/a", "/a=b/100%"}) {
        freedesktop::LoginItem item(program);
        const auto [japanese, english] = messagesOf([&] { item.registerItem(); });
        EXPECT_THAT(japanese, HasSubstr("プログラムのパス")) << program;
        EXPECT_THAT(english, HasSubstr("cannot be written to an autostart entry")) << program;
        EXPECT_FALSE(fs::exists(file())) << program;
    }
}

TEST_F(AutostartEntryTest, RegisteringAgainNamesTheProgramThatRunsNow) {
    item_.registerItem();
    freedesktop::LoginItem{"/bin/false"}.registerItem();
    EXPECT_EQ(textOf("Exec"), "/bin/false");
}

TEST_F(AutostartEntryTest, TakingOutAnEntryForAllUsersHidesItFromThisOne) {
    home_.write(sharedFile(), minimal);
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::requiresApproval);
    EXPECT_EQ(contentsOf(sharedFile()), minimal);
    const auto info = readBack();
    ASSERT_TRUE(info);
    EXPECT_TRUE(g_desktop_app_info_get_is_hidden(info.get()));
    EXPECT_EQ(textOf("Exec"), "/bin/true");
    item_.registerItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::requiresApproval);
}

// --- what the status says ---

TEST_F(AutostartEntryTest, AnEntryThatStartsSomethingIsEnabled) {
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("Hidden=false\nX-GNOME-Autostart-enabled=true\n"),
              LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("TryExec=true\nNotShowIn=KDE;\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("X-GNOME-Autostart-enabled=nonsense\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf("[Desktop Entry]\nType=Application\nName=H\nExec=env A=b sh -c 'sleep 5'\n"),
              LoginItemStatus::enabled);
}

TEST_F(AutostartEntryTest, AnEntryThatIsSwitchedOffWaitsForApproval) {
    EXPECT_EQ(statusWith("Hidden=true\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("X-GNOME-Autostart-enabled=false\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("X-MATE-Autostart-enabled=false\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusOf("[Desktop Entry]\nHidden=true\n"), LoginItemStatus::requiresApproval);
}

TEST_F(AutostartEntryTest, AnEntryForOtherDesktopsWaitsForApproval) {
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    EXPECT_EQ(statusWith("OnlyShowIn=KDE;XFCE;\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("NotShowIn=GNOME;\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("OnlyShowIn=KDE;GNOME;\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("NotShowIn=KDE;\n"), LoginItemStatus::enabled);
}

TEST_F(AutostartEntryTest, AnEntryThatStartsNothingIsNotFound) {
    const std::string start = "[Desktop Entry]\nType=Application\nName=H\n";
    EXPECT_EQ(statusOf(start + "Exec=/nowhere/at/all\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(start + "Exec=env \"/nowhere/100%%\"\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(start), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(start + "DBusActivatable=true\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(start + "Exec=true \"open\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusWith("TryExec=/nowhere/at/all\n"), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf("[Desktop Entry]\nType=Link\nName=H\nURL=file:///\n"),
              LoginItemStatus::notFound);
    EXPECT_EQ(statusOf(""), LoginItemStatus::notFound);
    EXPECT_EQ(statusOf("\x01\xFF[[[\n"), LoginItemStatus::notFound);
}

TEST_F(AutostartEntryTest, WhatIsNoFileIsNotFound) {
    fs::create_directories(file());
    EXPECT_EQ(item_.status(), LoginItemStatus::notFound);
    fs::remove(file());
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(item_.status(), LoginItemStatus::notFound);
}

TEST_F(AutostartEntryTest, AProgramThatIsNotExecutableIsNotFound) {
    const auto program = home_.write(home_.path() / "program", "");
    freedesktop::LoginItem item(program);
    item.registerItem();
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    fs::permissions(program, fs::perms::owner_all);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

} // namespace
} // namespace hollowfernpike::test
