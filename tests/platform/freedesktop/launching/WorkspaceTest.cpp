#include "platform/freedesktop/launching/WorkspaceTest.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(WorkspaceTest, ADirectoryThatIsGoneIsAnError) {
    const auto path = home_.addEntry("lost", home_.witness("stay"), "Path=/no/such/directory\n");
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr(path), HasSubstr("cannot be started")));
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(WorkspaceTest, AnEntryThatIsGoneOrBrokenIsAnErrorInBothLanguages) {
    const auto missing = (home_.applications() / "gone.desktop").string();
    EXPECT_THAT(errorOf(missing), HasSubstr(missing));
    EXPECT_THAT(open(missing).error->japanese(), HasSubstr("見つかりません"));
    const auto broken = home_.write(home_.applications() / "broken.desktop", "[Desktop");
    EXPECT_THAT(errorOf(broken), AllOf(HasSubstr(broken), HasSubstr("does not describe")));
    EXPECT_THAT(open(broken).error->japanese(), HasSubstr("アプリケーションではありません"));
    EXPECT_THAT(feedback_.begun, IsEmpty());
}

TEST_F(WorkspaceTest, APathWithAZeroByteLaunchesNothing) {
    const auto path = home_.addEntry("app", home_.witness("stay"));
    EXPECT_TRUE(open(path + '\0' + "junk").error.has_value());
    EXPECT_THAT(feedback_.begun, IsEmpty());
    launchOne(path);
}

TEST_F(WorkspaceTest, AnUnreadableEntryIsAnError) {
    const auto loop = home_.applications() / "loop.desktop";
    std::filesystem::create_symlink(loop, loop);
    EXPECT_THAT(errorOf(loop.string()),
                AllOf(HasSubstr(loop.string()), HasSubstr("cannot be read")));
}

TEST_F(WorkspaceTest, AMissingProgramIsAnError) {
    const auto path = home_.addEntry("lost", (home_.path() / "bin/gone").string());
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr("bin/gone"), HasSubstr("missing")));
}

TEST_F(WorkspaceTest, AProgramThatIsNotOneIsAnErrorAndLeavesNoChild) {
    const auto program = home_.write(home_.path() / "bin/text", "just text\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    EXPECT_THAT(errorOf(home_.addEntry("text", program)), HasSubstr("cannot be started"));
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(WorkspaceTest, AHiddenEntryIsAnError) {
    EXPECT_THAT(errorOf(home_.addEntry("hidden", home_.witness("stay"), "Hidden=true\n")),
                HasSubstr("has been removed"));
}

TEST_F(WorkspaceTest, AnEntryThatMenusDoNotShowIsStillLaunched) {
    launchOne(home_.addEntry("discreet", home_.witness("stay"), "NoDisplay=true\n"));
}

/// An entry outside of the applications directories, executable, the user's, writable by nobody
/// else.
class OutsideEntryTest : public WorkspaceTest {
protected:
    OutsideEntryTest() { std::filesystem::permissions(path_, std::filesystem::perms::owner_all); }

    void expectRefused() {
        EXPECT_THAT(errorOf(path_), AllOf(HasSubstr(path_), HasSubstr("not trusted")));
        EXPECT_THAT(home_.witnesses(), IsEmpty());
        EXPECT_THAT(feedback_.begun, IsEmpty());
    }

    const std::string path_ =
        home_.write(home_.path() / "Downloads/my tool.desktop",
                    "[Desktop Entry]\nType=Application\nName=T\nExec=" + home_.witness("stay"));
};

TEST_F(OutsideEntryTest, IsLaunchedIfItIsTheUsersOwnAndExecutable) {
    launchOne(path_);
}

TEST_F(OutsideEntryTest, IsRefusedIfItIsNotExecutable) {
    std::filesystem::permissions(path_, std::filesystem::perms{0600});
    expectRefused();
}

TEST_F(OutsideEntryTest, IsRefusedIfOthersMayWriteIt) {
    for (const auto mode : {0770, 0702, 0720}) {
        std::filesystem::permissions(path_, static_cast<std::filesystem::perms>(mode));
        expectRefused();
    }
}

TEST_F(OutsideEntryTest, IsRefusedIfItBelongsToAnotherUser) {
    constexpr uid_t somebody = 4711;
    ASSERT_EQ(::chown(path_.c_str(), somebody, somebody), 0);
    std::filesystem::permissions(path_, std::filesystem::perms{0755});
    expectRefused();
}

TEST_F(OutsideEntryTest, IsNotTakenForInstalledByADetourThroughTheApplicationsDirectory) {
    std::filesystem::permissions(path_, std::filesystem::perms{0600});
    std::filesystem::create_directories(home_.applications() / "sub");
    for (const auto* way : {"../../Downloads", "sub/../../../Downloads"}) {
        const auto detour = home_.applications() / way / "my tool.desktop";
        EXPECT_THAT(errorOf(detour.string()), HasSubstr("not trusted"));
    }
}

TEST_F(OutsideEntryTest, InstalledEntriesNeedNotBeExecutable) {
    const auto path = home_.addEntry("app", home_.witness("stay"));
    std::filesystem::permissions(path, std::filesystem::perms{0644});
    launchOne(path);
}

TEST_F(WorkspaceTest, AnEntryWhoseFileNameIsNotUtf8IsLaunched) {
    const auto path = home_.addEntry("caf\xE9", home_.witness("stay", "%k"));
    EXPECT_EQ(launchOne(path).variable("GIO_LAUNCHED_DESKTOP_FILE"), path);
}

TEST_F(WorkspaceTest, AnEditedEntryIsLaunchedAsItIsNow) {
    const auto path = home_.addEntry("edited", home_.witness("leave", "old"));
    EXPECT_TRUE(isGone(launched(path)));
    home_.addEntry("edited", home_.witness("stay", "new"));
    ++feedback_.holds;
    const auto second = launched(path);
    const auto witnesses = home_.awaitWitnesses(2);
    const auto edited = std::ranges::find(witnesses, second, &test::WitnessReport::process);
    ASSERT_NE(edited, witnesses.end());
    EXPECT_EQ(edited->all("argument").back(), "new");
}

} // namespace

} // namespace hollowfernpike::freedesktop
