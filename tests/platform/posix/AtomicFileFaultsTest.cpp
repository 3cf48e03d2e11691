// This program is linked so that calls of write, fsync, rename and mkostemp reach the functions
// below (ld's --wrap): a disk can fail on demand, and the order of what reaches it can be seen.

#include "platform/posix/AtomicFile.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::test {
namespace {

/// What the disk does while `active`: errno values, 0 for none.
struct Disk {
    bool active = false;
    std::filesystem::path folder; ///< of the file
    std::vector<std::string> calls;
    int interruptions = 0;        ///< of each kind of call, before it goes through
    std::size_t largestWrite = 0; ///< bytes that one call takes; 0 for all
    std::size_t room = ~std::size_t{0};
    int noRoomError = ENOSPC;
    int createError = 0;
    int fileSyncError = 0;
    int folderSyncError = 0;
    int renameError = 0;
};

Disk disk; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

int fail(int number) {
    errno = number;
    return -1;
}

void record(const std::string& call) {
    if (disk.active) {
        disk.calls.push_back(call);
    }
}

/// Records the call, and whether a signal interrupts it.
bool isInterrupted(const std::string& call) {
    const auto earlier = std::ranges::count(disk.calls, "interrupted " + call);
    if (!disk.active || earlier >= disk.interruptions) {
        record(call);
        return false;
    }
    record("interrupted " + call);
    errno = EINTR;
    return true;
}

/// What a descriptor stands for: the folder of the file, another one, or else a file.
std::string kindOf(int descriptor) {
    struct stat status = {};
    struct stat folder = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISDIR(status.st_mode)) {
        return "file";
    }
    const bool isSame = ::stat(disk.folder.c_str(), &folder) == 0 &&
                        folder.st_dev == status.st_dev && folder.st_ino == status.st_ino;
    return isSame ? "folder" : "another folder";
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the names are the
// linker's
extern "C" {

ssize_t __real_write(int descriptor, const void* bytes, size_t count);
int __real_fsync(int descriptor);
int __real_rename(const char* from, const char* to);
int __real_mkostemp(char* name, int flags);

ssize_t __wrap_write(int descriptor, const void* bytes, size_t count) {
    if (!disk.active) {
        return __real_write(descriptor, bytes, count);
    }
    if (isInterrupted("write")) {
        return -1;
    }
    if (disk.room == 0) {
        return fail(disk.noRoomError);
    }
    count = std::min({count, disk.room, disk.largestWrite == 0 ? count : disk.largestWrite});
    disk.room -= count;
    return __real_write(descriptor, bytes, count);
}

int __wrap_fsync(int descriptor) {
    const auto kind = kindOf(descriptor);
    if (isInterrupted("sync " + kind)) {
        return -1;
    }
    const int error = kind == "file" ? disk.fileSyncError : disk.folderSyncError;
    return disk.active && error != 0 ? fail(error) : __real_fsync(descriptor);
}

int __wrap_rename(const char* from, const char* to) {
    record("rename");
    return disk.active && disk.renameError != 0 ? fail(disk.renameError) : __real_rename(from, to);
}

int __wrap_mkostemp(char* name, int flags) {
    record("create");
    return disk.active && disk.createError != 0 ? fail(disk.createError)
                                                : __real_mkostemp(name, flags);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

using testing::ElementsAre;

class AtomicFileFaultsTest : public testing::Test {
protected:
    AtomicFileFaultsTest() {
        disk = {};
        disk.folder = directory_.path();
        putFile(file(), "old");
    }

    std::filesystem::path file() const { return directory_.path() / "file"; }

    /// Writes "new text" with the disk as it is set up.
    std::error_code write() const {
        disk.active = true;
        const auto code = failureOf([&] { posix::writeFileAtomically(file(), "new text"); });
        disk.active = false;
        return code;
    }

    void expectTheOldFileAndNothingElse() const {
        EXPECT_EQ(contentsOf(file()), "old");
        EXPECT_THAT(namesIn(directory_.path()), ElementsAre("file"));
    }

    TemporaryDirectory directory_;
};

TEST_F(AtomicFileFaultsTest, SyncsTheFileBeforeTheRenameAndTheFolderAfterIt) {
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_THAT(disk.calls, ElementsAre("create", "write", "sync file", "rename", "sync folder"));
    EXPECT_EQ(contentsOf(file()), "new text");
}

TEST_F(AtomicFileFaultsTest, SyncsTheFolderOfTheFileThatALinkLeadsTo) {
    disk.folder = directory_.path() / "below";
    std::filesystem::create_directory(disk.folder);
    std::filesystem::rename(file(), disk.folder / "file");
    std::filesystem::create_symlink("below/file", file());
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_THAT(disk.calls, ElementsAre("create", "write", "sync file", "rename", "sync folder"));
    EXPECT_EQ(contentsOf(disk.folder / "file"), "new text");
}

TEST_F(AtomicFileFaultsTest, WhatASignalInterruptsIsDoneAgain) {
    disk.interruptions = 2;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
    EXPECT_THAT(disk.calls,
                ElementsAre("create", "interrupted write", "interrupted write", "write",
                            "interrupted sync file", "interrupted sync file", "sync file", "rename",
                            "interrupted sync folder", "interrupted sync folder", "sync folder"));
}

TEST_F(AtomicFileFaultsTest, ADiskThatTakesABitAtATimeGetsAll) {
    disk.largestWrite = 3;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
    EXPECT_EQ(std::ranges::count(disk.calls, "write"), 3);
}

TEST_F(AtomicFileFaultsTest, AFullDiskLeavesTheOldFile) {
    for (const std::size_t room : {0U, 1U, 7U}) {
        for (const auto error : {ENOSPC, EDQUOT, EIO}) {
            disk.room = room;
            disk.noRoomError = error;
            EXPECT_EQ(write(), std::error_code(error, std::generic_category()));
            expectTheOldFileAndNothingElse();
        }
    }
}

TEST_F(AtomicFileFaultsTest, ADiskThatCannotKeepTheFileLeavesTheOldOne) {
    disk.fileSyncError = EIO;
    EXPECT_EQ(write(), std::errc::io_error);
    EXPECT_THAT(disk.calls, ElementsAre("create", "write", "sync file"));
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, ANameThatCannotBeGivenLeavesTheOldFile) {
    disk.renameError = EPERM;
    EXPECT_EQ(write(), std::errc::operation_not_permitted);
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, WithoutFreeDescriptorsTheOldFileStands) {
    disk.createError = EMFILE;
    EXPECT_EQ(write(), std::errc::too_many_files_open);
    EXPECT_THAT(disk.calls, ElementsAre("create"));
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, AFolderThatCannotBeKeptIsAnError) {
    disk.folderSyncError = EIO;
    EXPECT_EQ(write(), std::errc::io_error);
    EXPECT_THAT(namesIn(directory_.path()), ElementsAre("file"));
}

TEST_F(AtomicFileFaultsTest, AFileSystemThatKnowsNoSyncOfFoldersIsTakenAsItIs) {
    disk.folderSyncError = EINVAL;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
}

} // namespace
} // namespace hollowfernpike::test
