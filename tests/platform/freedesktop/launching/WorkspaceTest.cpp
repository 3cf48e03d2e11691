#include "platform/freedesktop/launching/WorkspaceTest.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

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

TEST_F(WorkspaceTest, AnEntryOutsideTheApplicationsDirectoriesIsLaunched) {
    const auto path =
        home_.write(home_.path() / "Desktop/my tool.desktop",
                    "[Desktop Entry]\nType=Application\nName=T\nExec=" + home_.witness("stay"));
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
