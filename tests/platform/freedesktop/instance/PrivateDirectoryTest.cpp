#include "platform/freedesktop/instance/PrivateDirectory.h"

#include "support/Files.h"
#include "support/Privileges.h"
#include "support/TemporaryDirectory.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::test {
namespace {

namespace fs = std::filesystem;
using freedesktop::PrivateDirectory;

class PrivateDirectoryTest : public testing::Test {
protected:
    PrivateDirectoryTest() {
        fs::create_directory(temporary());
        ::setenv("TMPDIR", temporary().c_str(), 1);
        ::setenv("XDG_RUNTIME_DIR", runtime().c_str(), 1);
    }

    fs::path runtime() const { return directory_.path() / "run"; }
    fs::path temporary() const { return directory_.path() / "tmp"; }
    fs::path own() const { return temporary() / ("hollowfernpike-" + std::to_string(::geteuid())); }

    static void make(const fs::path& directory, mode_t mode) {
        ASSERT_EQ(::mkdir(directory.c_str(), mode), 0);
        ASSERT_EQ(::chmod(directory.c_str(), mode), 0);
    }

    TemporaryDirectory directory_;
};

TEST_F(PrivateDirectoryTest, TheRuntimeDirectoryComesFirst) {
    make(runtime(), 0700);
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), runtime());
    EXPECT_FALSE(fs::exists(own()));
}

TEST_F(PrivateDirectoryTest, WithoutOneThereIsAPrivateOneOfOurOwn) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(PrivateDirectory::forRuntime().path(), own());
        EXPECT_EQ(fs::status(own()).permissions(), fs::perms::owner_all);
    }
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), own());
}

TEST_F(PrivateDirectoryTest, ARuntimeDirectoryThatIsNotPrivateIsPassedOver) {
    make(runtime(), 0755);
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), own());
    ASSERT_EQ(::chmod(runtime().c_str(), 0701), 0);
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), own());
    fs::remove(runtime());
    putFile(runtime(), "");
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), own());
}

TEST_F(PrivateDirectoryTest, AnotherUsersDirectoryIsRefused) {
    make(runtime(), 0700);
    EXPECT_EQ(failureOf([this] { PrivateDirectory(runtime(), ::geteuid() + 1); }),
              std::errc::file_exists);
    EXPECT_EQ(PrivateDirectory(runtime(), ::geteuid()).path(), runtime());
}

TEST_F(PrivateDirectoryTest, OneOfOurOwnThatIsOpenToOthersIsRefused) {
    make(own(), 0777);
    try {
        PrivateDirectory::forRuntime();
        FAIL();
    } catch (const platform::FileError& error) {
        const auto path = own().string();
        EXPECT_EQ(error.english(), "Cannot create the folder \"" + path +
                                       "\": It exists and is not private to the user");
        EXPECT_EQ(error.japanese(),
                  "フォルダ「" + path +
                      "」を作成できません: 既に存在し、ユーザー専用ではありません");
    }
}

TEST_F(PrivateDirectoryTest, ALinkInItsPlaceIsRefused) {
    make(directory_.path() / "target", 0700);
    fs::create_directory_symlink(directory_.path() / "target", own());
    EXPECT_EQ(failureOf([] { PrivateDirectory::forRuntime(); }), std::errc::not_a_directory);
    fs::remove(own());
    putFile(own(), "");
    EXPECT_EQ(failureOf([] { PrivateDirectory::forRuntime(); }), std::errc::not_a_directory);
}

TEST_F(PrivateDirectoryTest, OneThatCannotBeMadeIsNamed) {
    fs::remove(temporary());
    EXPECT_EQ(failureOf([] { PrivateDirectory::forRuntime(); }),
              std::errc::no_such_file_or_directory);
    make(temporary(), 0555);
    fs::permissions(directory_.path(), fs::perms{0755});
    const auto make = [] {
        ::_exit(becomeOrdinaryUser() && failureOf([] { PrivateDirectory::forRuntime(); }) ==
                                            std::errc::permission_denied
                    ? 0
                    : 1);
    };
    EXPECT_EXIT(make(), testing::ExitedWithCode(0), "");
}

TEST_F(PrivateDirectoryTest, WhatWasCheckedStaysTheDirectory) {
    make(runtime(), 0700);
    const PrivateDirectory checked(runtime());
    fs::rename(runtime(), directory_.path() / "moved");
    make(runtime(), 0777);
    EXPECT_TRUE(fs::equivalent("/proc/self/fd/" + std::to_string(checked.descriptor()),
                               directory_.path() / "moved"));
}

TEST_F(PrivateDirectoryTest, WhereAnotherUserHasTakenOurPlaceTheCacheServes) {
    make(own(), 0700);
    ASSERT_EQ(::chown(own().c_str(), 4711, 4711), 0);
    const auto cache = directory_.path() / "cache";
    ::setenv("XDG_CACHE_HOME", cache.c_str(), 1);
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), cache / "hollowfernpike");
    struct stat status = {};
    ASSERT_EQ(::stat((cache / "hollowfernpike").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_EQ(PrivateDirectory::forRuntime().path(), cache / "hollowfernpike")
        << "the next finds it";
}

} // namespace
} // namespace hollowfernpike::test
