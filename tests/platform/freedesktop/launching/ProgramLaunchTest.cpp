#include "platform/freedesktop/launching/WorkspaceTest.h"

#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

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

using ProgramLaunchTest = WorkspaceTest;

TEST_F(ProgramLaunchTest, StartsTheProgramWithItsArguments) {
    const auto path =
        home_.addEntry("org.example.One", home_.witness("stay", R"("a b" %U 50%% %k)"));
    EXPECT_THAT(launchOne(path).all("argument"),
                ElementsAre(home_.program(), home_.reports().string(), "stay", "a b", "50%", path));
}

TEST_F(ProgramLaunchTest, StartsAProgramWhosePathHasSpacesAndSpecialCharacters) {
    const auto program = home_.path() / "my $programs/it's \"fine\" (really) & ü";
    std::filesystem::create_directories(program.parent_path());
    std::filesystem::copy_file(home_.program(), program);
    const auto path = home_.addEntry(
        "odd", '"' +
                   (home_.path() / "my \\\\$programs/it's \\\\\"fine\\\\\" (really) & ü").string() +
                   "\" " + home_.reports().string() + " stay");
    EXPECT_EQ(launchOne(path).first("argument"), program.string());
}

TEST_F(ProgramLaunchTest, TheProgramRunsInTheDirectoryThatTheEntryNames) {
    const auto directory = home_.path() / "work here";
    std::filesystem::create_directories(directory);
    const auto path =
        home_.addEntry("placed", home_.witness("stay"), "Path=" + directory.string() + '\n');
    EXPECT_EQ(launchOne(path).first("directory"), directory.string());
}

TEST_F(ProgramLaunchTest, WithoutADirectoryTheProgramRunsInTheHomeDirectory) {
    EXPECT_EQ(launchOne(home_.addEntry("homely", home_.witness("stay"))).first("directory"),
              home_.path().string());
}

TEST_F(ProgramLaunchTest, TheProgramLeadsASessionOfItsOwn) {
    const auto witness = launchOne(home_.addEntry("free", home_.witness("stay")));
    EXPECT_EQ(witness.first("session"), std::to_string(witness.process));
}

TEST_F(ProgramLaunchTest, TheProgramKnowsItsEntryAndNotOurs) {
    ::setenv("GIO_LAUNCHED_DESKTOP_FILE", "/ours.desktop", 1);
    ::setenv("GIO_LAUNCHED_DESKTOP_FILE_PID", "1", 1);
    const auto path = home_.addEntry("known", home_.witness("stay"));
    const auto witness = launchOne(path);
    EXPECT_EQ(witness.variable("GIO_LAUNCHED_DESKTOP_FILE"), path);
    EXPECT_EQ(witness.variable("GIO_LAUNCHED_DESKTOP_FILE_PID"), "(unset)");
    EXPECT_EQ(processFacts(witness.process).launchedEntry, path);
}

TEST_F(ProgramLaunchTest, TheProgramInheritsOurEnvironmentButNotWhatIsAboutUs) {
    ::setenv("SOME_SETTING", "kept", 1);
    ::setenv("INVOCATION_ID", "ours", 1);
    ::setenv("NOTIFY_SOCKET", "/ours", 1);
    const auto witness = launchOne(home_.addEntry("clean", home_.witness("stay")));
    EXPECT_EQ(witness.variable("SOME_SETTING"), "kept");
    EXPECT_EQ(witness.variable("INVOCATION_ID"), "(unset)");
    EXPECT_EQ(witness.variable("NOTIFY_SOCKET"), "(unset)");
}

TEST_F(ProgramLaunchTest, TheProgramGetsTheVariablesThatWeHaveChangedAsTheUserHasThem) {
    ::setenv("OTHER_SETTING", "theirs", 1);
    ::unsetenv("DBUS_FATAL_WARNINGS");
    setOwnVariable("OTHER_SETTING", "ours");
    setOwnVariable("DBUS_FATAL_WARNINGS", "0");
    const auto witness = launchOne(home_.addEntry("own", home_.witness("stay")));
    EXPECT_EQ(witness.variable("OTHER_SETTING"), "theirs");
    EXPECT_EQ(witness.variable("DBUS_FATAL_WARNINGS"), "(unset)");
}

TEST_F(ProgramLaunchTest, HandsOverTheStartUpIdentifierOfThisLaunch) {
    ::setenv("DESKTOP_STARTUP_ID", "stale", 1);
    const auto path = home_.addEntry("org.example.Noted", home_.witness("stay"),
                                     "StartupNotify=true\nStartupWMClass=Noted\n");
    const auto witness = launchOne(path);
    EXPECT_EQ(witness.variable("DESKTOP_STARTUP_ID"), "start-1_TIME4711");
    EXPECT_EQ(witness.variable("XDG_ACTIVATION_TOKEN"), "start-1_TIME4711");
    ASSERT_THAT(feedback_.begun, SizeIs(1));
    EXPECT_EQ(feedback_.begun[0].entryPath, path);
    EXPECT_EQ(feedback_.begun[0].name, "org.example.Noted");
    EXPECT_EQ(feedback_.begun[0].program, home_.program());
    EXPECT_EQ(feedback_.begun[0].windowClass, "Noted");
    EXPECT_TRUE(feedback_.begun[0].announces);
}

TEST_F(ProgramLaunchTest, ALaunchThatIsNotToActivateHasNoStartUpIdentifier) {
    ::setenv("DESKTOP_STARTUP_ID", "stale", 1);
    open(home_.addEntry("quiet", home_.witness("stay")), false);
    EXPECT_EQ(home_.awaitWitnesses(1)[0].variable("DESKTOP_STARTUP_ID"), "(unset)");
    EXPECT_THAT(feedback_.begun, IsEmpty());
}

TEST_F(ProgramLaunchTest, TheProgramGetsDefaultSignalsAndNoneBlocked) {
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGUSR1, SIG_IGN);
    sigset_t blocked{};
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    const auto witness = launchOne(home_.addEntry("default", home_.witness("stay")));
    // Whatever the C library starts ignores the two signals that the library keeps for itself.
    constexpr std::uint64_t ofTheLibrary = 0x1'8000'0000;
    EXPECT_EQ(std::stoull(witness.first("SigIgn:"), nullptr, 16) & ~ofTheLibrary, 0U);
    EXPECT_EQ(witness.first("SigBlk:"), std::string(16, '0'));
    sigset_t after{};
    ::pthread_sigmask(SIG_BLOCK, nullptr, &after);
    EXPECT_TRUE(sigismember(&after, SIGTERM)) << "our own mask must be as before";
    EXPECT_FALSE(sigismember(&after, SIGINT));
}

TEST_F(ProgramLaunchTest, TheProgramGetsNoDescriptorOfOursAndAnEmptyInput) {
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

TEST_F(ProgramLaunchTest, AnEndedProgramIsNobodysZombie) {
    EXPECT_TRUE(isGone(launched(home_.addEntry("short", home_.witness("leave")))));
    EXPECT_EQ(loop_.watched(), 0U);
}

TEST_F(ProgramLaunchTest, WaitingForProgramsLeavesOtherChildrenAlone) {
    const pid_t other = ::fork();
    if (other == 0) {
        ::_exit(7);
    }
    EXPECT_TRUE(isGone(launched(home_.addEntry("short", home_.witness("leave")))));
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(ProgramLaunchTest, AProgramOutlivesUs) {
    const auto path = home_.addEntry("lasting", home_.witness("stay"));
    const pid_t us = ::fork();
    if (us == 0) {
        {
            Workspace ours(entries_, processes_, windows_, feedback_, nullptr, loop_, queue_);
            ours.openApplication(path, {.activates = true}, {});
        }
        ::_exit(0);
    }
    ::waitpid(us, nullptr, 0);
    const auto witness = home_.awaitWitnesses(1).front();
    EXPECT_THAT(test::processState(witness.process), AllOf(Ne(""), Ne("Z")));
}

TEST_F(ProgramLaunchTest, ATerminalProgramRunsInTheInstalledTerminal) {
    const auto terminal = home_.write(home_.path() / "bin/x-terminal-emulator",
                                      "#!/bin/sh\nshift\nexec \"$@\" in-terminal\n");
    std::filesystem::permissions(terminal, std::filesystem::perms::owner_all);
    ::setenv("PATH", ((home_.path() / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
    const auto path = home_.addEntry("console", home_.witness("stay"), "Terminal=true\n");
    EXPECT_EQ(launchOne(path).all("argument").back(), "in-terminal");
}

TEST_F(ProgramLaunchTest, WithoutATerminalATerminalProgramIsAnError) {
    const auto path = home_.addEntry("console", home_.witness("stay"), "Terminal=true\n");
    ::setenv("PATH", home_.path().c_str(), 1);
    EXPECT_THAT(errorOf(path), HasSubstr("missing"));
}

} // namespace

} // namespace hollowfernpike::freedesktop
