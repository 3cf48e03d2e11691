#include "platform/freedesktop/files/AtomicFileTest.h"

namespace hollowfernpike::test {
namespace {

using freedesktop::writeFileAtomically;
using testing::ElementsAre;

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
