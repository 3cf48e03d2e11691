#include "platform/freedesktop/LoginItem.h"

#include "platform/LocalizedError.h"
#include "platform/freedesktop/ApplicationsHome.h"
#include "platform/freedesktop/Files.h"
#include "platform/freedesktop/GlibPointers.h"
#include "support/Privileges.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <cstdlib>

#include <gio/gdesktopappinfo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace hollowfernpike::test {
namespace {

namespace fs = std::filesystem;
using platform::LoginItemStatus;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr auto entryName = "app.hollowfernpike.Hollowfernpike.desktop";
constexpr auto minimal = "[Desktop Entry]\nType=Application\nName=H\nExec=true\n";

using EntryAsRead = std::unique_ptr<GDesktopAppInfo, freedesktop::Releaser<&g_object_unref>>;

class LoginItemTest : public testing::Test {
protected:
    LoginItemTest() {
        ::setenv("XDG_CONFIG_HOME", config().c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", (home_.path() / "shared").c_str(), 1);
        ::unsetenv("XDG_CURRENT_DESKTOP");
    }

    fs::path config() const { return home_.path() / "config"; }
    fs::path file() const { return config() / "autostart" / entryName; }
    fs::path sharedFile() const { return home_.path() / "shared/autostart" / entryName; }

    /// The status with this entry, which comes on top of the minimum that an entry needs.
    LoginItemStatus statusWith(const std::string& lines) { return statusOf(minimal + lines); }

    LoginItemStatus statusOf(const std::string& entry) {
        home_.write(file(), entry);
        return item_.status();
    }

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

    ApplicationsHome home_;
    freedesktop::LoginItem item_{"/bin/true"};
};

template <class Operation>
std::pair<std::string, std::string> messagesOf(Operation operation) {
    try {
        operation();
    } catch (const platform::LocalizedError& error) {
        return {error.japanese(), error.english()};
    }
    return {"no error", "no error"};
}

// --- registering ---

TEST_F(LoginItemTest, withoutAnEntryItIsNotRegistered) {
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(config()));
}

TEST_F(LoginItemTest, registersAndTakesOut) {
    item_.registerItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    EXPECT_THAT(namesIn(config() / "autostart"), ElementsAre(entryName));
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(LoginItemTest, theEntrySaysWhatDesktopsAskFor) {
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

TEST_F(LoginItemTest, theDefaultPlacesAreTheStandardsOwn) {
    ::unsetenv("XDG_CONFIG_HOME");
    item_.registerItem();
    EXPECT_TRUE(fs::exists(home_.path() / ".config/autostart" / entryName));
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, theProgramRunsWhateverItsPathIs) {
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

TEST_F(LoginItemTest, aPathThatNoEntryCanNameIsRefused) {
    for (const std::string program : {"/caf\xE9/a", "/a=b/100%"}) {
        freedesktop::LoginItem item(program);
        const auto [japanese, english] = messagesOf([&] { item.registerItem(); });
        EXPECT_THAT(japanese, HasSubstr("プログラムのパス")) << program;
        EXPECT_THAT(english, HasSubstr("cannot be written to an autostart entry")) << program;
        EXPECT_FALSE(fs::exists(file())) << program;
    }
}

TEST_F(LoginItemTest, registeringAgainNamesTheProgramThatRunsNow) {
    item_.registerItem();
    freedesktop::LoginItem{"/bin/false"}.registerItem();
    EXPECT_EQ(textOf("Exec"), "/bin/false");
}

TEST_F(LoginItemTest, registeringTurnsASwitchedOffEntryOnAgain) {
    for (const auto* lines : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n",
                              "X-MATE-Autostart-enabled=false\n", "OnlyShowIn=KDE;\n"}) {
        EXPECT_EQ(statusWith(lines), LoginItemStatus::requiresApproval) << lines;
        item_.registerItem();
        EXPECT_EQ(item_.status(), LoginItemStatus::enabled) << lines;
    }
}

TEST_F(LoginItemTest, registeringKeepsALinkAndReplacesItsTarget) {
    const auto target = home_.write(home_.path() / "dotfiles/entry", "old");
    fs::create_directories(file().parent_path());
    fs::create_symlink(target, file());
    item_.registerItem();
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_THAT(contentsOf(target), HasSubstr("Exec=/bin/true"));
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, takingOutALinkLeavesItsTarget) {
    const auto target = home_.write(home_.path() / "dotfiles/entry", minimal);
    fs::create_directories(file().parent_path());
    fs::create_symlink(target, file());
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    item_.unregisterItem();
    EXPECT_FALSE(fs::is_symlink(file()));
    EXPECT_EQ(contentsOf(target), minimal);
}

TEST_F(LoginItemTest, takingOutWhatIsNotThereIsNoError) {
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    home_.write(config() / "autostart", "a file where the folder would be");
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

// --- what the status says ---

TEST_F(LoginItemTest, anEntryThatStartsSomethingIsEnabled) {
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("Hidden=false\nX-GNOME-Autostart-enabled=true\n"),
              LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("TryExec=true\nNotShowIn=KDE;\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("X-GNOME-Autostart-enabled=nonsense\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf("[Desktop Entry]\nType=Application\nName=H\nExec=env A=b sh -c 'sleep 5'\n"),
              LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, anEntryThatIsSwitchedOffWaitsForApproval) {
    EXPECT_EQ(statusWith("Hidden=true\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("X-GNOME-Autostart-enabled=false\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("X-MATE-Autostart-enabled=false\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusOf("[Desktop Entry]\nHidden=true\n"), LoginItemStatus::requiresApproval);
}

TEST_F(LoginItemTest, anEntryForOtherDesktopsWaitsForApproval) {
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    EXPECT_EQ(statusWith("OnlyShowIn=KDE;XFCE;\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("NotShowIn=GNOME;\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusWith("OnlyShowIn=KDE;GNOME;\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("NotShowIn=KDE;\n"), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, anEntryThatStartsNothingIsNotFound) {
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

TEST_F(LoginItemTest, whatIsNoFileIsNotFound) {
    fs::create_directories(file());
    EXPECT_EQ(item_.status(), LoginItemStatus::notFound);
    fs::remove(file());
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(item_.status(), LoginItemStatus::notFound);
}

TEST_F(LoginItemTest, aProgramThatIsNotExecutableIsNotFound) {
    const auto program = home_.write(home_.path() / "program", "");
    freedesktop::LoginItem item(program);
    item.registerItem();
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    fs::permissions(program, fs::perms::owner_all);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, aBrokenLinkIsNoRegistration) {
    fs::create_directories(file().parent_path());
    fs::create_symlink("missing", file());
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

// --- an entry for all users ---

TEST_F(LoginItemTest, anEntryForAllUsersCounts) {
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, theUsersEntryHidesTheOneForAllUsers) {
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(statusWith("Hidden=true\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusOf("nonsense"), LoginItemStatus::notFound);
    home_.write(sharedFile(), "nonsense");
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, theMoreImportantOfTwoSharedDirectoriesCounts) {
    const auto other = home_.path() / "other";
    ::setenv("XDG_CONFIG_DIRS", (other.string() + ':' + (home_.path() / "shared").string()).c_str(),
             1);
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    home_.write(other / "autostart" / entryName, std::string{minimal} + "Hidden=true\n");
    EXPECT_EQ(item_.status(), LoginItemStatus::requiresApproval);
}

TEST_F(LoginItemTest, takingOutAnEntryForAllUsersHidesItFromThisOne) {
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

TEST_F(LoginItemTest, aUsersDirectoryThatIsSharedToo) {
    ::setenv("XDG_CONFIG_DIRS", config().c_str(), 1);
    item_.registerItem();
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

// --- failures ---

TEST_F(LoginItemTest, withoutAHomeDirectoryThereIsNoRegistration) {
    const auto check = [this] {
        ::unsetenv("XDG_CONFIG_HOME");
        ::setenv("XDG_CONFIG_DIRS", "/nonexistent", 1);
        ::setenv("HOME", "relative", 1);
        if (!becomeUnknownUser()) {
            ::_exit(2);
        }
        const bool unknown = item_.status() == LoginItemStatus::notRegistered;
        const auto [japanese, english] = messagesOf([&] { item_.registerItem(); });
        const bool told =
            english == "There is no home directory" && japanese == "ホームフォルダが見つかりません";
        ::_exit(unknown && told ? 0 : 1);
    };
    EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
}

TEST_F(LoginItemTest, aFolderThatMayNotBeWrittenIsNamed) {
    home_.write(file(), minimal);
    fs::permissions(home_.path(), fs::perms{0755});
    fs::permissions(file().parent_path(), fs::perms{0555});
    const auto check = [this] {
        if (!becomeOrdinaryUser()) {
            ::_exit(2);
        }
        const auto [japanese, english] = messagesOf([&] { item_.unregisterItem(); });
        const auto [japaneseToo, englishToo] = messagesOf([&] { item_.registerItem(); });
        const auto path = file().string();
        const bool right =
            english == "Cannot remove \"" + path + "\": Permission denied" &&
            japanese == "「" + path + "」を削除できません: アクセス権がありません" &&
            englishToo == "Cannot write \"" + path + "\": Permission denied" &&
            japaneseToo == "「" + path + "」に書き込めません: アクセス権がありません";
        ::_exit(right ? 0 : 1);
    };
    EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, aWriteThatFailsLeavesTheEntryAsItWas) {
    home_.write(file(), minimal);
    const auto check = [this] {
        rlimit none{0, 0};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &none);
        const auto failure = failureOf([&] { item_.registerItem(); });
        ::_exit(failure == std::errc::file_too_large ? 0 : 1);
    };
    EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), minimal);
    EXPECT_THAT(namesIn(file().parent_path()), ElementsAre(entryName));
}

TEST_F(LoginItemTest, aFileWhereTheFolderWouldBeIsNamed) {
    const auto blocking = home_.write(config() / "autostart", "not a folder");
    const auto [japanese, english] = messagesOf([&] { item_.registerItem(); });
    EXPECT_THAT(english, AllOf(HasSubstr(blocking), HasSubstr("Not a directory")));
    EXPECT_THAT(japanese, AllOf(HasSubstr(blocking), HasSubstr("フォルダではありません")));
    EXPECT_EQ(contentsOf(blocking), "not a folder");
}

TEST_F(LoginItemTest, aFolderWhereTheEntryWouldBeIsNamed) {
    fs::create_directories(file());
    const auto write = failureOf([&] { item_.registerItem(); });
    EXPECT_EQ(write, std::errc::is_a_directory);
    const auto remove = failureOf([&] { item_.unregisterItem(); });
    EXPECT_EQ(remove, std::errc::is_a_directory);
}

} // namespace
} // namespace hollowfernpike::test
