#include "platform/freedesktop/Workspace.h"

#include "platform/freedesktop/ApplicationsHome.h"
#include "support/FakeClientWindows.h"
#include "support/FakeLaunchFeedback.h"
#include "support/FakeMainQueue.h"
#include "support/FakeProcessActivation.h"
#include "support/PolledRunLoop.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Ne;
using ::testing::SizeIs;

class WorkspaceTest : public ::testing::Test {
protected:
    platform::OpenResult open(const std::string& path, bool activates = true) {
        std::optional<platform::OpenResult> answer;
        workspace_.openApplication(path, {.activates = activates},
                                   [&](const auto& result) { answer = result; });
        EXPECT_TRUE(answer) << "no answer yet";
        return answer.value_or(platform::OpenResult{});
    }

    /// The number of the program that a request starts or joins; -1 if there is none.
    pid_t launched(const std::string& path) {
        const auto result = open(path);
        EXPECT_TRUE(result.processIdentifier) << (result.error ? result.error->english() : path);
        return result.processIdentifier.value_or(-1);
    }

    std::string errorOf(const std::string& path) {
        const auto result = open(path);
        EXPECT_FALSE(result.processIdentifier);
        return result.error ? result.error->english() : "no error";
    }

    test::WitnessReport launchOne(const std::string& path) {
        const auto process = launched(path);
        const auto witnesses = home_.awaitWitnesses(1);
        EXPECT_EQ(process, witnesses.front().process);
        return witnesses.front();
    }

    bool isGone(pid_t process) {
        return loop_.runUntil([=] { return test::processState(process).empty(); });
    }

    test::ApplicationsHome home_;
    test::FakeClientWindows windows_;
    test::FakeLaunchFeedback feedback_;
    test::CallLog log_;
    test::FakeProcessActivation activation_{log_};
    test::PolledRunLoop loop_;
    test::FakeMainQueue queue_;
    DesktopEntries entries_;
    Workspace workspace_{entries_, windows_, feedback_, activation_, loop_, queue_};
};

TEST_F(WorkspaceTest, StartsTheProgramWithItsArguments) {
    const auto path =
        home_.addEntry("org.example.One", home_.witness("stay", R"("a b" %U 50%% %k)"));
    EXPECT_THAT(launchOne(path).all("argument"),
                ElementsAre(HFP_WITNESS, home_.reports().string(), "stay", "a b", "50%", path));
}

TEST_F(WorkspaceTest, StartsAProgramWhosePathHasSpacesAndSpecialCharacters) {
    const auto program = home_.path() / "my $programs/it's \"fine\" (really) & ü";
    std::filesystem::create_directories(program.parent_path());
    std::filesystem::copy_file(HFP_WITNESS, program);
    const auto path = home_.addEntry(
        "odd", '"' +
                   (home_.path() / "my \\\\$programs/it's \\\\\"fine\\\\\" (really) & ü").string() +
                   "\" " + home_.reports().string() + " stay");
    EXPECT_EQ(launchOne(path).first("argument"), program.string());
}

TEST_F(WorkspaceTest, TheProgramRunsInTheDirectoryThatTheEntryNames) {
    const auto directory = home_.path() / "work here";
    std::filesystem::create_directories(directory);
    const auto path =
        home_.addEntry("placed", home_.witness("stay"), "Path=" + directory.string() + '\n');
    EXPECT_EQ(launchOne(path).first("directory"), directory.string());
}

TEST_F(WorkspaceTest, WithoutADirectoryTheProgramRunsInTheHomeDirectory) {
    EXPECT_EQ(launchOne(home_.addEntry("homely", home_.witness("stay"))).first("directory"),
              home_.path().string());
}

TEST_F(WorkspaceTest, ADirectoryThatIsGoneIsAnError) {
    const auto path = home_.addEntry("lost", home_.witness("stay"), "Path=/no/such/directory\n");
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr(path), HasSubstr("cannot be started")));
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(WorkspaceTest, TheProgramLeadsASessionOfItsOwn) {
    const auto witness = launchOne(home_.addEntry("free", home_.witness("stay")));
    EXPECT_EQ(witness.first("session"), std::to_string(witness.process));
}

TEST_F(WorkspaceTest, TheProgramKnowsItsEntryAndItsOwnNumber) {
    ::setenv("GIO_LAUNCHED_DESKTOP_FILE", "/ours.desktop", 1);
    ::setenv("GIO_LAUNCHED_DESKTOP_FILE_PID", "1", 1);
    const auto path = home_.addEntry("known", home_.witness("stay"));
    const auto witness = launchOne(path);
    EXPECT_EQ(witness.variable("GIO_LAUNCHED_DESKTOP_FILE"), path);
    EXPECT_EQ(witness.variable("GIO_LAUNCHED_DESKTOP_FILE_PID"), std::to_string(witness.process));
}

TEST_F(WorkspaceTest, TheProgramInheritsOurEnvironmentButNotWhatIsAboutUs) {
    ::setenv("SOME_SETTING", "kept", 1);
    ::setenv("INVOCATION_ID", "ours", 1);
    ::setenv("NOTIFY_SOCKET", "/ours", 1);
    const auto witness = launchOne(home_.addEntry("clean", home_.witness("stay")));
    EXPECT_EQ(witness.variable("SOME_SETTING"), "kept");
    EXPECT_EQ(witness.variable("INVOCATION_ID"), "(unset)");
    EXPECT_EQ(witness.variable("NOTIFY_SOCKET"), "(unset)");
}

TEST_F(WorkspaceTest, HandsOverTheStartUpIdentifierOfThisLaunch) {
    ::setenv("DESKTOP_STARTUP_ID", "stale", 1);
    const auto path = home_.addEntry("org.example.Noted", home_.witness("stay"),
                                     "StartupNotify=true\nStartupWMClass=Noted\n");
    const auto witness = launchOne(path);
    EXPECT_EQ(witness.variable("DESKTOP_STARTUP_ID"), "start-1_TIME4711");
    EXPECT_EQ(witness.variable("XDG_ACTIVATION_TOKEN"), "start-1_TIME4711");
    ASSERT_THAT(feedback_.begun, SizeIs(1));
    EXPECT_EQ(feedback_.begun[0].entryPath, path);
    EXPECT_EQ(feedback_.begun[0].name, "org.example.Noted");
    EXPECT_EQ(feedback_.begun[0].program, HFP_WITNESS);
    EXPECT_EQ(feedback_.begun[0].windowClass, "Noted");
    EXPECT_TRUE(feedback_.begun[0].announces);
}

TEST_F(WorkspaceTest, ALaunchThatIsNotToActivateHasNoStartUpIdentifier) {
    ::setenv("DESKTOP_STARTUP_ID", "stale", 1);
    open(home_.addEntry("quiet", home_.witness("stay")), false);
    EXPECT_EQ(home_.awaitWitnesses(1)[0].variable("DESKTOP_STARTUP_ID"), "(unset)");
    EXPECT_THAT(feedback_.begun, IsEmpty());
}

TEST_F(WorkspaceTest, TheProgramGetsDefaultSignalsAndNoneBlocked) {
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGUSR1, SIG_IGN);
    sigset_t blocked{};
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    const auto witness = launchOne(home_.addEntry("default", home_.witness("stay")));
    EXPECT_EQ(witness.first("SigIgn:"), std::string(16, '0'));
    EXPECT_EQ(witness.first("SigBlk:"), std::string(16, '0'));
    sigset_t after{};
    ::pthread_sigmask(SIG_BLOCK, nullptr, &after);
    EXPECT_TRUE(sigismember(&after, SIGTERM)) << "our own mask must be as before";
    EXPECT_FALSE(sigismember(&after, SIGINT));
}

TEST_F(WorkspaceTest, TheProgramGetsNoDescriptorOfOursAndAnEmptyInput) {
    const int leak = ::open("/etc/hostname", O_RDONLY);
    const int highLeak = ::fcntl(leak, F_DUPFD, 200);
    const auto witness = launchOne(home_.addEntry("closed", home_.witness("stay")));
    const auto descriptors = witness.all("descriptor");
    EXPECT_EQ(descriptors[0], "0 /dev/null");
    for (const auto& descriptor : descriptors) {
        EXPECT_THAT(descriptor, ::testing::Not(HasSubstr("hostname")));
    }
    ::close(leak);
    ::close(highLeak);
}

TEST_F(WorkspaceTest, AnEndedProgramIsNobodysZombie) {
    EXPECT_TRUE(isGone(launched(home_.addEntry("short", home_.witness("leave")))));
    EXPECT_EQ(loop_.watched(), 0U);
}

TEST_F(WorkspaceTest, WaitingForProgramsLeavesOtherChildrenAlone) {
    const pid_t other = ::fork();
    if (other == 0) {
        ::_exit(7);
    }
    EXPECT_TRUE(isGone(launched(home_.addEntry("short", home_.witness("leave")))));
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(WorkspaceTest, AProgramOutlivesUs) {
    const auto path = home_.addEntry("lasting", home_.witness("stay"));
    const pid_t us = ::fork();
    if (us == 0) {
        {
            Workspace ours(entries_, windows_, feedback_, activation_, loop_, queue_);
            ours.openApplication(path, {.activates = true}, {});
        }
        ::_exit(0);
    }
    ::waitpid(us, nullptr, 0);
    const auto witness = home_.awaitWitnesses(1).front();
    EXPECT_THAT(test::processState(witness.process), AllOf(Ne(""), Ne("Z")));
}

TEST_F(WorkspaceTest, ASecondRequestJoinsTheLaunchUnderWay) {
    const auto path = home_.addEntry("single", home_.witness("stay"));
    const auto first = launched(path);
    for (int press = 0; press < 30; ++press) {
        EXPECT_EQ(launched(path), first);
    }
    launched(home_.addEntry("fence", home_.witness("stay")));
    EXPECT_THAT(home_.awaitWitnesses(2), SizeIs(2));
    EXPECT_THAT(feedback_.begun, SizeIs(2));
}

TEST_F(WorkspaceTest, ARequestByAnotherPathToTheSameFileJoinsToo) {
    const auto path = home_.addEntry("single", home_.witness("stay"));
    const auto link = home_.path() / "link.desktop";
    std::filesystem::create_symlink(path, link);
    EXPECT_EQ(launched(path), launched(link.string()));
}

TEST_F(WorkspaceTest, OnceTheProcessShowsAWindowTheNextRequestStartsAnother) {
    const auto path = home_.addEntry("double", home_.witness("stay"));
    const auto first = launched(path);
    EXPECT_TRUE(windows_.isWatched());
    windows_.show({.process = first, .owner = {}});
    EXPECT_FALSE(windows_.isWatched());
    EXPECT_NE(launched(path), first);
    EXPECT_THAT(feedback_.ended, IsEmpty());
}

TEST_F(WorkspaceTest, AWindowThatWasAskedForOnceIsLeftToTheDesktop) {
    const auto first = launched(home_.addEntry("single", home_.witness("stay")));
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

TEST_F(WorkspaceTest, AWindowThatWasAskedForAgainMeanwhileIsBroughtForward) {
    const auto path = home_.addEntry("single", home_.witness("stay"));
    const auto first = launched(path);
    ++feedback_.presses;
    EXPECT_EQ(launched(path), first);
    EXPECT_THAT(log_.calls(), IsEmpty());
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(),
                ElementsAre("processActivation.bringToFront " + std::to_string(first)));
}

TEST_F(WorkspaceTest, AWindowStaysBehindOnceTheUserHasAskedForSomethingElse) {
    const auto path = home_.addEntry("single", home_.witness("stay"));
    const auto first = launched(path);
    ++feedback_.presses;
    EXPECT_EQ(launched(path), first);
    ++feedback_.presses;
    windows_.show({.process = first, .owner = {}});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

TEST_F(WorkspaceTest, AWindowOfAnotherApplicationDoesNotEndTheLaunch) {
    const auto path = home_.addEntry("single", home_.witness("stay"));
    const auto first = launched(path);
    windows_.show({.process = ::getpid(), .owner = {.name = "x", .bundleIdentifier = "x"}});
    windows_.show({.process = std::nullopt, .owner = {}});
    EXPECT_EQ(launched(path), first);
}

TEST_F(WorkspaceTest, AProgramThatDiesAtOnceCanBeLaunchedAgain) {
    const auto path = home_.addEntry("short", home_.witness("leave"));
    const auto first = launched(path);
    EXPECT_TRUE(isGone(first));
    EXPECT_THAT(feedback_.ended, ElementsAre("start-1_TIME4711"));
    EXPECT_FALSE(windows_.isWatched());
    EXPECT_NE(launched(path), first);
}

TEST_F(WorkspaceTest, AProgramThatNeverShowsAWindowCanBeLaunchedAgainAfterTenSeconds) {
    const auto path = home_.addEntry("slow", home_.witness("stay"));
    const auto first = launched(path);
    queue_.advance(std::chrono::milliseconds{9999});
    EXPECT_EQ(launched(path), first);
    EXPECT_THAT(feedback_.ended, IsEmpty());
    queue_.advance(std::chrono::milliseconds{1});
    EXPECT_THAT(feedback_.ended, ElementsAre("start-1_TIME4711"));
    EXPECT_NE(launched(path), first);
}

TEST_F(WorkspaceTest, TheClockOfAnEarlierLaunchDoesNotEndALaterOne) {
    const auto path = home_.addEntry("short", home_.witness("leave"));
    EXPECT_TRUE(isGone(launched(path)));
    queue_.advance(std::chrono::milliseconds{9000});
    const auto second = launched(home_.addEntry("short", home_.witness("stay")));
    queue_.advance(std::chrono::milliseconds{2000});
    EXPECT_EQ(launched(path), second);
}

TEST_F(WorkspaceTest, ARequestFromWithinACompletionJoins) {
    const auto path = home_.addEntry("nested", home_.witness("stay"));
    std::optional<std::int32_t> inner;
    std::optional<std::int32_t> outer;
    workspace_.openApplication(path, {.activates = true}, [&](const auto& result) {
        outer = result.processIdentifier;
        inner = launched(path);
    });
    ASSERT_TRUE(outer);
    EXPECT_EQ(inner, outer);
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
    const auto second = launched(path);
    const auto witnesses = home_.awaitWitnesses(2);
    const auto edited = std::ranges::find(witnesses, second, &test::WitnessReport::process);
    ASSERT_NE(edited, witnesses.end());
    EXPECT_EQ(edited->all("argument").back(), "new");
}

TEST_F(WorkspaceTest, ATerminalProgramRunsInTheInstalledTerminal) {
    const auto terminal = home_.write(home_.path() / "bin/x-terminal-emulator",
                                      "#!/bin/sh\nshift\nexec \"$@\" in-terminal\n");
    std::filesystem::permissions(terminal, std::filesystem::perms::owner_all);
    ::setenv("PATH", ((home_.path() / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
    const auto path = home_.addEntry("console", home_.witness("stay"), "Terminal=true\n");
    EXPECT_EQ(launchOne(path).all("argument").back(), "in-terminal");
}

TEST_F(WorkspaceTest, WithoutATerminalATerminalProgramIsAnError) {
    const auto path = home_.addEntry("console", home_.witness("stay"), "Terminal=true\n");
    ::setenv("PATH", home_.path().c_str(), 1);
    EXPECT_THAT(errorOf(path), HasSubstr("missing"));
}

} // namespace

} // namespace hollowfernpike::freedesktop
