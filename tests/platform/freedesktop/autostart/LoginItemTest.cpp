#include "platform/freedesktop/autostart/LoginItemTest.h"

#include "support/Files.h"
#include "support/Privileges.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// --- registering ---

TEST_F(LoginItemTest, WithoutAnEntryItIsNotRegistered) {
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(config()));
}

TEST_F(LoginItemTest, RegistersAndTakesOut) {
    item_.registerItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    EXPECT_THAT(namesIn(config() / "autostart"), ElementsAre(entryName));
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(LoginItemTest, TheDefaultPlacesAreTheStandardsOwn) {
    ::unsetenv("XDG_CONFIG_HOME");
    item_.registerItem();
    EXPECT_TRUE(fs::exists(home_.path() / ".config/autostart" / entryName));
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, RegisteringTurnsASwitchedOffEntryOnAgain) {
    for (const auto* lines : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n",
                              "X-MATE-Autostart-enabled=false\n", "OnlyShowIn=KDE;\n"}) {
        EXPECT_EQ(statusWith(lines), LoginItemStatus::requiresApproval) << lines;
        item_.registerItem();
        EXPECT_EQ(item_.status(), LoginItemStatus::enabled) << lines;
    }
}

// --- links ---

TEST_F(LoginItemTest, RegisteringKeepsALinkAndReplacesItsTarget) {
    const auto target = home_.write(home_.path() / "dotfiles/entry", "old");
    fs::create_directories(file().parent_path());
    fs::create_symlink(target, file());
    item_.registerItem();
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_THAT(contentsOf(target), HasSubstr("Exec=/bin/true"));
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, TakingOutALinkLeavesItsTarget) {
    const auto target = home_.write(home_.path() / "dotfiles/entry", minimal);
    fs::create_directories(file().parent_path());
    fs::create_symlink(target, file());
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    item_.unregisterItem();
    EXPECT_FALSE(fs::is_symlink(file()));
    EXPECT_EQ(contentsOf(target), minimal);
}

TEST_F(LoginItemTest, ABrokenLinkIsNoRegistration) {
    fs::create_directories(file().parent_path());
    fs::create_symlink("missing", file());
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

TEST_F(LoginItemTest, TakingOutWhatIsNotThereIsNoError) {
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    home_.write(config() / "autostart", "a file where the folder would be");
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

// --- an entry for all users ---

TEST_F(LoginItemTest, AnEntryForAllUsersCounts) {
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, TheUsersEntryHidesTheOneForAllUsers) {
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(statusWith("Hidden=true\n"), LoginItemStatus::requiresApproval);
    EXPECT_EQ(statusOf("nonsense"), LoginItemStatus::notFound);
    home_.write(sharedFile(), "nonsense");
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, TheMoreImportantOfTwoSharedDirectoriesCounts) {
    const auto other = home_.path() / "other";
    ::setenv("XDG_CONFIG_DIRS", (other.string() + ':' + (home_.path() / "shared").string()).c_str(),
             1);
    home_.write(sharedFile(), minimal);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    home_.write(other / "autostart" / entryName, std::string{minimal} + "Hidden=true\n");
    EXPECT_EQ(item_.status(), LoginItemStatus::requiresApproval);
}

TEST_F(LoginItemTest, AUsersDirectoryThatIsSharedToo) {
    ::setenv("XDG_CONFIG_DIRS", config().c_str(), 1);
    item_.registerItem();
    item_.unregisterItem();
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
}

// --- failures ---

TEST_F(LoginItemTest, WithoutAHomeDirectoryThereIsNoRegistration) {
    const auto check = [this] {
        ::unsetenv("XDG_CONFIG_HOME");
        ::setenv("XDG_CONFIG_DIRS", "/nonexistent", 1);
        ::setenv("HOME", "relative", 1);
        if (!becomeUnknownUser()) {
            ::_exit(2);
        }
        if (item_.status() != LoginItemStatus::notRegistered) {
            ::_exit(3);
        }
        const auto [japanese, english] = messagesOf([&] { item_.registerItem(); });
        const bool told =
            english == "There is no home directory" && japanese == "ホームフォルダが見つかりません";
        ::_exit(told ? 0 : 4);
    };
    EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
}

TEST_F(LoginItemTest, AFolderThatMayNotBeWrittenIsNamed) {
    home_.write(file(), minimal);
    fs::permissions(home_.path(), fs::perms{0755});
    fs::permissions(file().parent_path(), fs::perms{0555});
    const auto check = [this] {
        if (!becomeOrdinaryUser()) {
            ::_exit(2);
        }
        const auto path = file().string();
        const auto removing = messagesOf([&] { item_.unregisterItem(); });
        if (removing != std::pair{"「" + path + "」を削除できません: アクセス権がありません",
                                  "Cannot remove \"" + path + "\": Permission denied"}) {
            ::_exit(3);
        }
        const auto writing = messagesOf([&] { item_.registerItem(); });
        const bool told =
            writing == std::pair{"「" + path + "」に書き込めません: アクセス権がありません",
                                 "Cannot write \"" + path + "\": Permission denied"};
        ::_exit(told ? 0 : 4);
    };
    EXPECT_EXIT(check(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, AWriteThatFailsLeavesTheEntryAsItWas) {
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

TEST_F(LoginItemTest, AFileWhereTheFolderWouldBeIsNamed) {
    const auto blocking = home_.write(config() / "autostart", "not a folder");
    const auto [japanese, english] = messagesOf([&] { item_.registerItem(); });
    EXPECT_THAT(english, AllOf(HasSubstr(blocking), HasSubstr("Not a directory")));
    EXPECT_THAT(japanese, AllOf(HasSubstr(blocking), HasSubstr("フォルダではありません")));
    EXPECT_EQ(contentsOf(blocking), "not a folder");
}

TEST_F(LoginItemTest, AFolderWhereTheEntryWouldBeIsNamed) {
    fs::create_directories(file());
    const auto write = failureOf([&] { item_.registerItem(); });
    EXPECT_EQ(write, std::errc::is_a_directory);
    const auto remove = failureOf([&] { item_.unregisterItem(); });
    EXPECT_EQ(remove, std::errc::is_a_directory);
}

} // namespace
} // namespace hollowfernpike::test
