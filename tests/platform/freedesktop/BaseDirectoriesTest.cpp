#include "platform/freedesktop/BaseDirectories.h"

#include "platform/freedesktop/FileManager.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <pwd.h>
#include <sched.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::configHome;
using freedesktop::dataHome;
using freedesktop::homeDirectory;
using freedesktop::runtimeDirectory;
using Directory = std::optional<std::filesystem::path>;

class BaseDirectoriesTest : public testing::Test {
protected:
    BaseDirectoriesTest() {
        for (const auto* variable :
             {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
            ::unsetenv(variable);
        }
    }

    static void set(const char* variable, const char* value) { ::setenv(variable, value, 1); }
};

TEST_F(BaseDirectoriesTest, theirOwnVariablesComeFirst) {
    set("HOME", "/home/someone");
    set("XDG_DATA_HOME", "/data");
    set("XDG_CONFIG_HOME", "/config");
    set("XDG_RUNTIME_DIR", "/run/user/1000");
    EXPECT_EQ(dataHome(), "/data");
    EXPECT_EQ(configHome(), "/config");
    EXPECT_EQ(runtimeDirectory(), "/run/user/1000");
    EXPECT_EQ(homeDirectory(), "/home/someone");
}

TEST_F(BaseDirectoriesTest, thenStandardPlacesInTheHomeDirectory) {
    set("HOME", "/home/someone");
    EXPECT_EQ(dataHome(), "/home/someone/.local/share");
    EXPECT_EQ(configHome(), "/home/someone/.config");
    EXPECT_EQ(runtimeDirectory(), std::nullopt);
}

TEST_F(BaseDirectoriesTest, emptyAndRelativeValuesCountAsUnset) {
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

TEST_F(BaseDirectoriesTest, withoutHomeTheUserDatabaseTells) {
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

TEST_F(BaseDirectoriesTest, namesWithBlanksAndOtherBytesAreKept) {
    set("XDG_DATA_HOME", "/a b/日本\xFF\n/");
    EXPECT_EQ(dataHome(), "/a b/日本\xFF\n/");
}

TEST_F(BaseDirectoriesTest, applicationSupportIsTheDataHome) {
    set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(freedesktop::FileManager{}.applicationSupportDirectories(),
              std::vector<std::filesystem::path>{"/data"});
}

/// Makes this process one of a user that the system's database does not know.
bool becomeUnknownUser() {
    constexpr uid_t unknown = 4242424;
    if (::getuid() == 0) {
        return ::setresuid(unknown, unknown, unknown) == 0;
    }
    const auto map = std::to_string(unknown) + ' ' + std::to_string(::getuid()) + " 1";
    if (::unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
    std::ofstream{"/proc/self/uid_map"} << map;
    return ::getuid() == unknown;
}

TEST_F(BaseDirectoriesTest, aUserWithoutAnyHomeHasNoDirectories) {
    const auto asUnknownUser = [] {
        if (!becomeUnknownUser()) {
            ::_exit(2);
        }
        const bool nothingKnown =
            homeDirectory() == std::nullopt && dataHome() == std::nullopt &&
            configHome() == std::nullopt &&
            freedesktop::FileManager{}.applicationSupportDirectories().empty();
        ::_exit(nothingKnown ? 0 : 1);
    };
    EXPECT_EXIT(asUnknownUser(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace hollowfernpike::test
