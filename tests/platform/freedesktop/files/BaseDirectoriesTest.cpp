#include "platform/freedesktop/files/BaseDirectories.h"

#include "platform/freedesktop/files/FileManager.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"
#include "support/Privileges.h"
#include "support/UserDatabase.h"

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::configHome;
using freedesktop::dataHome;
using freedesktop::homeDirectory;
using freedesktop::runtimeDirectory;
using freedesktop::settleBaseDirectories;
using freedesktop::sharedConfigDirectories;
using freedesktop::sharedDataDirectories;
using freedesktop::usersEnvironment;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::Not;
using testing::StartsWith;
using Directory = std::optional<std::filesystem::path>;

class BaseDirectoriesTest : public testing::Test {
protected:
    BaseDirectoriesTest() {
        for (const auto* variable :
             {"HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS",
              "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
            ::unsetenv(variable);
        }
    }

    static void set(const char* variable, const char* value) { ::setenv(variable, value, 1); }
    static std::optional<std::string> valueOf(const char* variable) {
        const char* const value = std::getenv(variable);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
};

TEST_F(BaseDirectoriesTest, TheirOwnVariablesComeFirst) {
    set("HOME", "/home/someone");
    set("XDG_DATA_HOME", "/data");
    set("XDG_CONFIG_HOME", "/config");
    set("XDG_RUNTIME_DIR", "/run/user/1000");
    EXPECT_EQ(dataHome(), "/data");
    EXPECT_EQ(configHome(), "/config");
    EXPECT_EQ(runtimeDirectory(), "/run/user/1000");
    EXPECT_EQ(homeDirectory(), "/home/someone");
}

TEST_F(BaseDirectoriesTest, ThenStandardPlacesInTheHomeDirectory) {
    set("HOME", "/home/someone");
    EXPECT_EQ(dataHome(), "/home/someone/.local/share");
    EXPECT_EQ(configHome(), "/home/someone/.config");
    EXPECT_EQ(runtimeDirectory(), std::nullopt);
}

TEST_F(BaseDirectoriesTest, EmptyAndRelativeValuesCountAsUnset) {
    for (const auto* value : {"", "relative/path", ".", "~", "~/data"}) {
        set("HOME", "/home/someone");
        set("XDG_DATA_HOME", value);
        set("XDG_CONFIG_HOME", value);
        set("XDG_RUNTIME_DIR", value);
        EXPECT_EQ(dataHome(), "/home/someone/.local/share") << value;
        EXPECT_EQ(configHome(), "/home/someone/.config") << value;
        EXPECT_EQ(runtimeDirectory(), std::nullopt) << value;
    }
}

TEST_F(BaseDirectoriesTest, WithoutHomeTheUserDatabaseTells) {
    const auto* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    const std::filesystem::path home = user->pw_dir;
    EXPECT_EQ(homeDirectory(), home);
    EXPECT_EQ(dataHome(), home / ".local/share");
    set("HOME", "relative");
    EXPECT_EQ(homeDirectory(), home);
    set("HOME", "");
    EXPECT_EQ(homeDirectory(), home);
}

TEST_F(BaseDirectoriesTest, NamesWithBlanksAndOtherBytesAreKept) {
    set("XDG_DATA_HOME", "/a b/日本\xFF\n/");
    EXPECT_EQ(dataHome(), "/a b/日本\xFF\n/");
}

TEST_F(BaseDirectoriesTest, ApplicationSupportIsTheDataHome) {
    set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(freedesktop::FileManager{}.applicationSupportDirectories(),
              std::vector<std::filesystem::path>{"/data"});
}

TEST_F(BaseDirectoriesTest, SharedDirectoriesAreListedTheMostImportantFirst) {
    using Directories = std::vector<std::filesystem::path>;
    EXPECT_EQ(sharedDataDirectories(), (Directories{"/usr/local/share", "/usr/share"}));
    EXPECT_EQ(sharedConfigDirectories(), Directories{"/etc/xdg"});
    set("XDG_DATA_DIRS", "/b:relative::/a/");
    set("XDG_CONFIG_DIRS", "/d:/c d");
    EXPECT_EQ(sharedDataDirectories(), (Directories{"/b", "/a/"}));
    EXPECT_EQ(sharedConfigDirectories(), (Directories{"/d", "/c d"}));
    for (const auto* value : {"", "relative", ":relative:./a"}) {
        set("XDG_CONFIG_DIRS", value);
        EXPECT_EQ(sharedConfigDirectories(), Directories{"/etc/xdg"}) << value;
    }
}

TEST_F(BaseDirectoriesTest, SettledVariablesMeanTheSameWithoutAnyChecks) {
    haveHomeInTheUserDatabase("/home/someone");
    for (const auto* value : {"", "relative"}) {
        for (const auto* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                                     "XDG_RUNTIME_DIR", "XDG_DATA_DIRS", "TMPDIR"}) {
            set(variable, value);
        }
        set("XDG_DATA_HOME", "/data");
        set("XDG_CONFIG_DIRS", "relative:/b::/a/");
        settleBaseDirectories();
        EXPECT_EQ(valueOf("HOME"), "/home/someone") << value;
        for (const auto* variable :
             {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
            EXPECT_EQ(valueOf(variable), std::nullopt) << variable << '=' << value;
        }
        EXPECT_EQ(valueOf("XDG_DATA_HOME"), "/data");
        EXPECT_EQ(valueOf("XDG_DATA_DIRS"), "/usr/local/share:/usr/share");
        EXPECT_EQ(valueOf("XDG_CONFIG_DIRS"), "/b:/a/");
    }
}

TEST_F(BaseDirectoriesTest, TheUserKeepsTheVariablesAsTheyWere) {
    const auto expectThatTheyAreKept = [] {
        set("XDG_CONFIG_HOME", "relative");
        set("XDG_DATA_HOME", "");
        set("XDG_CONFIG_DIRS", "relative:/a");
        set("SOME_SETTING", "kept");
        settleBaseDirectories();
        settleBaseDirectories();
        const auto variables = usersEnvironment();
        for (const auto* kept : {"XDG_CONFIG_HOME=relative", "XDG_DATA_HOME=",
                                 "XDG_CONFIG_DIRS=relative:/a", "SOME_SETTING=kept"}) {
            EXPECT_THAT(variables, Contains(kept).Times(1));
        }
        EXPECT_THAT(variables,
                    Each(AllOf(Not(StartsWith("HOME=")), Not(StartsWith("XDG_DATA_DIRS=")))));
        EXPECT_THAT(variables, Contains(StartsWith("XDG_")).Times(3));
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a new process: nothing is settled yet
    EXPECT_EXIT(expectThatTheyAreKept(), testing::ExitedWithCode(0), "");
}

TEST_F(BaseDirectoriesTest, AUserWithoutAnyHomeHasNoDirectories) {
    const auto asUnknownUser = [] {
        if (!becomeUnknownUser()) {
            ::_exit(2);
        }
        set("HOME", "relative");
        settleBaseDirectories();
        const bool nothingKnown =
            valueOf("HOME") == std::nullopt && homeDirectory() == std::nullopt &&
            dataHome() == std::nullopt && configHome() == std::nullopt &&
            freedesktop::FileManager{}.applicationSupportDirectories().empty();
        ::_exit(nothingKnown ? 0 : 1);
    };
    EXPECT_EXIT(asUnknownUser(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace hollowfernpike::test
