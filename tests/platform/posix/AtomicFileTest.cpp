#include "platform/posix/AtomicFileTest.h"

#include "support/Privileges.h"

#include <algorithm>
#include <array>
#include <vector>

#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using testing::ElementsAre;

TEST_F(AtomicFileTest, MakesANewFileForTheUserAlone) {
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, ReplacesAFileByAnotherOne) {
    putFile(file(), "a longer old text");
    fs::create_hard_link(file(), folder() / "old");
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    EXPECT_EQ(contentsOf(folder() / "old"), "a longer old text");
}

TEST_F(AtomicFileTest, WritesNothingAndAnyBytes) {
    const std::string bytes("\0\xFF\n\r\0", 5);
    writeFileAtomically(file(), bytes);
    EXPECT_EQ(contentsOf(file()), bytes);
    writeFileAtomically(file(), "");
    EXPECT_EQ(contentsOf(file()), "");
    EXPECT_TRUE(fs::exists(file()));
}

TEST_F(AtomicFileTest, WritesMoreThanOneSystemCallTakes) {
    std::string bytes(40 << 20, 'x');
    bytes.back() = 'y';
    writeFileAtomically(file(), bytes);
    EXPECT_EQ(contentsOf(file()), bytes);
}

TEST_F(AtomicFileTest, KeepsTheModeWhateverTheMask) {
    putFile(file(), "old");
    for (const auto mode : {0640U, 0666U, 0400U, 0755U, 0600U}) {
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        const auto mask = ::umask(0777);
        writeFileAtomically(file(), "new");
        ::umask(mask);
        EXPECT_EQ(modeOf(file()), mode);
    }
}

/// A group that an ordinary user may give files to: a further one if the user is in several.
gid_t ownGroup() {
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    EXPECT_EQ(::getgroups(static_cast<int>(groups.size()), groups.data()), std::ssize(groups));
    const auto further = std::ranges::find_if(groups, [](gid_t g) { return g != ::getegid(); });
    return further == groups.end() ? ::getegid() : *further;
}

TEST_F(AtomicFileTest, KeepsTheOwnerWhereTheSystemLetsUs) {
    putFile(file(), "old");
    uid_t user = 12345;
    gid_t group = 54321;
    if (::chown(file().c_str(), user, group) != 0) {
        user = ::geteuid();
        group = ownGroup();
        ASSERT_EQ(::chown(file().c_str(), user, group), 0);
    }
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    struct stat after = {};
    ASSERT_EQ(::stat(file().c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, user);
    EXPECT_EQ(after.st_gid, group);
}

TEST_F(AtomicFileTest, WritesAFileOfAnotherUserAsOurs) {
    putFile(file(), "old");
    ASSERT_EQ(::chmod(file().c_str(), 0644), 0);
    ASSERT_EQ(::chmod(folder().c_str(), 0777), 0);
    const auto write = [this] {
        ::_exit(becomeOrdinaryUser() && !failure(file()) && contentsOf(file()) == "new" ? 0 : 1);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), "new");
}

TEST_F(AtomicFileTest, TakesANameAsLongAsTheFileSystemAllows) {
    const auto path = folder() / std::string(255, 'n');
    writeFileAtomically(path, "new");
    EXPECT_EQ(contentsOf(path), "new");
    EXPECT_EQ(failure(folder() / std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_THAT(namesIn(folder()), ElementsAre(path.filename().string()));
}

TEST_F(AtomicFileTest, TakesARelativePath) {
    fs::current_path(folder());
    writeFileAtomically("file", "new");
    EXPECT_EQ(contentsOf(file()), "new");
    writeFileAtomically("./file", "newer");
    EXPECT_EQ(contentsOf(file()), "newer");
}

class AtomicFileLinkTest : public AtomicFileTest {
protected:
    AtomicFileLinkTest() {
        fs::create_directory(folder() / "real");
        putFile(target(), "old");
    }

    fs::path target() const { return folder() / "real/target"; }

    void expectWrittenThrough(const fs::path& link) const {
        writeFileAtomically(link, "new");
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_FALSE(fs::is_symlink(target()));
        EXPECT_EQ(contentsOf(target()), "new");
        EXPECT_THAT(namesIn(folder() / "real"), ElementsAre("target"));
    }
};

TEST_F(AtomicFileLinkTest, AnAbsoluteLinkStaysOne) {
    fs::create_symlink(target(), file());
    expectWrittenThrough(file());
}

TEST_F(AtomicFileLinkTest, ARelativeLinkStaysOne) {
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
    EXPECT_EQ(fs::read_symlink(file()), "real/target");
}

TEST_F(AtomicFileLinkTest, ARelativeLinkCountsFromWhereItReallyStands) {
    fs::create_directory(folder() / "real/links");
    fs::create_symlink("../target", folder() / "real/links/link");
    fs::create_directory_symlink("real/links", folder() / "short");
    writeFileAtomically(folder() / "short/link", "new");
    EXPECT_EQ(contentsOf(target()), "new");
    EXPECT_TRUE(fs::is_symlink(folder() / "real/links/link"));
}

TEST_F(AtomicFileLinkTest, AChainOfLinksStays) {
    fs::create_symlink("third", file());
    fs::create_symlink(folder() / "second", folder() / "third");
    fs::create_symlink("real/target", folder() / "second");
    expectWrittenThrough(file());
    EXPECT_TRUE(fs::is_symlink(folder() / "second"));
    EXPECT_TRUE(fs::is_symlink(folder() / "third"));
}

TEST_F(AtomicFileLinkTest, TheModeIsThatOfTheTarget) {
    ASSERT_EQ(::chmod(target().c_str(), 0640), 0);
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
    EXPECT_EQ(modeOf(target()), 0640U);
}

TEST_F(AtomicFileLinkTest, ABrokenLinkIsMended) {
    fs::remove(target());
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
}

TEST_F(AtomicFileLinkTest, ALinkIntoAMissingFolderFails) {
    fs::create_symlink("missing/target", file());
    EXPECT_EQ(failure(file()), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(fs::is_symlink(file()));
}

TEST_F(AtomicFileLinkTest, ALoopFails) {
    fs::create_symlink("file", file());
    EXPECT_EQ(failure(file()), std::errc::too_many_symbolic_link_levels);
    fs::create_symlink("two", folder() / "one");
    fs::create_symlink("one", folder() / "two");
    EXPECT_EQ(failure(folder() / "one"), std::errc::too_many_symbolic_link_levels);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file", "one", "real", "two"));
}

TEST_F(AtomicFileLinkTest, ALinkToAPipeFailsAndThePipeStays) {
    const auto pipe = folder() / "pipe"; // our own: a failing test would replace it
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("pipe", file());
    EXPECT_EQ(failure(file()), std::errc::invalid_argument);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_TRUE(fs::is_fifo(pipe));
}

} // namespace
} // namespace hollowfernpike::test
