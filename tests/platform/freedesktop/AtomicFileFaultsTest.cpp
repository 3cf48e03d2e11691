// This program takes the place of the C library's file functions, so that a disk can fail on demand
// and the order of what reaches it can be seen. Outside of a test they only pass the calls on.

#include "platform/freedesktop/AtomicFile.h"
#include "platform/freedesktop/Files.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

/// What the disk does while `active`: errno values, 0 for none.
struct Disk {
    bool active = false;
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

/// Records a call that starts, unless a signal interrupts it.
bool isInterrupted(const std::string& call) {
    const auto earlier = std::ranges::count(disk.calls, "interrupted " + call);
    if (disk.active && earlier < disk.interruptions) {
        disk.calls.push_back("interrupted " + call);
        errno = EINTR;
        return true;
    }
    if (disk.active) {
        disk.calls.push_back(call);
    }
    return false;
}

bool isFolder(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace
} // namespace hollowfernpike::test

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t count) {
    using hollowfernpike::test::disk;
    if (disk.active) {
        if (hollowfernpike::test::isInterrupted("write")) {
            return -1;
        }
        if (disk.room == 0) {
            return hollowfernpike::test::fail(disk.noRoomError);
        }
        count = std::min({count, disk.room, disk.largestWrite == 0 ? count : disk.largestWrite});
        disk.room -= count;
    }
    return ::syscall(SYS_write, descriptor, bytes, count);
}

int fsync(int descriptor) {
    using hollowfernpike::test::disk;
    if (disk.active) {
        const bool folder = hollowfernpike::test::isFolder(descriptor);
        if (hollowfernpike::test::isInterrupted(folder ? "sync folder" : "sync file")) {
            return -1;
        }
        if (const int error = folder ? disk.folderSyncError : disk.fileSyncError; error != 0) {
            return hollowfernpike::test::fail(error);
        }
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int rename(const char* from, const char* to) noexcept {
    using hollowfernpike::test::disk;
    if (disk.active) {
        disk.calls.emplace_back("rename");
        if (disk.renameError != 0) {
            return hollowfernpike::test::fail(disk.renameError);
        }
    }
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

int mkostemp(char* name, int flags) {
    using hollowfernpike::test::disk;
    if (disk.active) {
        disk.calls.emplace_back("create");
        if (disk.createError != 0) {
            return hollowfernpike::test::fail(disk.createError);
        }
    }
    return ::mkostemps(name, 0, flags);
}

} // extern "C"

namespace hollowfernpike::test {
namespace {

using testing::ElementsAre;

class AtomicFileFaultsTest : public testing::Test {
protected:
    AtomicFileFaultsTest() {
        disk = {};
        putFile(file(), "old");
    }

    std::filesystem::path file() const { return directory_.path() / "file"; }

    /// Writes "new text" with the disk as it is set up.
    std::error_code write() const {
        disk.active = true;
        const auto code = failureOf([&] { freedesktop::writeFileAtomically(file(), "new text"); });
        disk.active = false;
        return code;
    }

    void expectTheOldFileAndNothingElse() const {
        EXPECT_EQ(contentsOf(file()), "old");
        EXPECT_THAT(namesIn(directory_.path()), ElementsAre("file"));
    }

    TemporaryDirectory directory_;
};

TEST_F(AtomicFileFaultsTest, theNewFileIsOnTheDiskBeforeItHasTheNameAndTheNameBeforeReturn) {
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_THAT(disk.calls, ElementsAre("create", "write", "sync file", "rename", "sync folder"));
    EXPECT_EQ(contentsOf(file()), "new text");
}

TEST_F(AtomicFileFaultsTest, whatASignalInterruptsIsDoneAgain) {
    disk.interruptions = 2;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
    EXPECT_THAT(disk.calls,
                ElementsAre("create", "interrupted write", "interrupted write", "write",
                            "interrupted sync file", "interrupted sync file", "sync file", "rename",
                            "interrupted sync folder", "interrupted sync folder", "sync folder"));
}

TEST_F(AtomicFileFaultsTest, aDiskThatTakesABitAtATimeGetsAll) {
    disk.largestWrite = 3;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
    EXPECT_EQ(std::ranges::count(disk.calls, "write"), 3);
}

TEST_F(AtomicFileFaultsTest, aFullDiskLeavesTheOldFile) {
    for (const std::size_t room : {0U, 1U, 7U}) {
        for (const auto error : {ENOSPC, EDQUOT, EIO}) {
            disk.room = room;
            disk.noRoomError = error;
            EXPECT_EQ(write(), std::error_code(error, std::generic_category()));
            expectTheOldFileAndNothingElse();
        }
    }
}

TEST_F(AtomicFileFaultsTest, aDiskThatCannotKeepTheFileLeavesTheOldOne) {
    disk.fileSyncError = EIO;
    EXPECT_EQ(write(), std::errc::io_error);
    EXPECT_THAT(disk.calls, ElementsAre("create", "write", "sync file"));
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, aNameThatCannotBeGivenLeavesTheOldFile) {
    disk.renameError = EPERM;
    EXPECT_EQ(write(), std::errc::operation_not_permitted);
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, withoutFreeDescriptorsTheOldFileStands) {
    disk.createError = EMFILE;
    EXPECT_EQ(write(), std::errc::too_many_files_open);
    EXPECT_THAT(disk.calls, ElementsAre("create"));
    expectTheOldFileAndNothingElse();
}

TEST_F(AtomicFileFaultsTest, aFolderThatCannotBeKeptIsAnError) {
    disk.folderSyncError = EIO;
    EXPECT_EQ(write(), std::errc::io_error);
    EXPECT_THAT(namesIn(directory_.path()), ElementsAre("file"));
}

TEST_F(AtomicFileFaultsTest, aFileSystemThatKnowsNoSyncOfFoldersIsTakenAsItIs) {
    disk.folderSyncError = EINVAL;
    EXPECT_EQ(write(), std::error_code{});
    EXPECT_EQ(contentsOf(file()), "new text");
}

} // namespace
} // namespace hollowfernpike::test
