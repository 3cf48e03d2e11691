#include "platform/freedesktop/owners/RunningApplications.h"

#include "platform/freedesktop/ApplicationsHome.h"
#include "support/ChildProcess.h"
#include "support/WaitUntil.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/FakeWindows.h"
#include "support/fakes/FakeWorkspace.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using test::ChildProcess;
using test::Environment;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunningApplicationsTest : public ::testing::Test {
protected:
    std::vector<std::int32_t> running(const std::string& identifier) {
        std::vector<std::int32_t> numbers;
        for (const auto& application : running_.withBundleIdentifier(identifier)) {
            EXPECT_EQ(application.bundleIdentifier, identifier);
            numbers.push_back(application.processIdentifier);
        }
        return numbers;
    }

    std::unique_ptr<ChildProcess> start(const std::string& program, const std::string& manner,
                                        const Environment& environment = {}) {
        const auto reports = home_.witnesses().size();
        auto child = std::make_unique<ChildProcess>(
            std::vector<std::string>{home_.program(program), home_.reports().string(), manner},
            environment);
        home_.awaitWitnesses(reports + (manner == "parent" ? 2 : 1));
        return child;
    }

    // Kills a process and waits until it is a zombie.
    static void end(const ChildProcess& process) {
        process.signal(SIGKILL);
        EXPECT_TRUE(test::waitUntil([&] { return test::processState(process.pid()) == "Z"; }));
    }

    // Installs an application whose program is a witness called like it.
    void install(const std::string& name) {
        home_.addEntry(name, home_.witnessNamed(name, "stay"));
    }

    void showWindow(const ChildProcess& process, const std::string& identifier) {
        windows_.show({.process = process.pid(),
                       .owner = {.name = identifier, .bundleIdentifier = identifier}});
    }

    test::ApplicationsHome home_;
    test::CallLog log_;
    test::FakeWindows windows_{log_};
    test::FakeWorkspace workspace_{log_};
    DesktopEntries entries_;
    ProcessTable processes_{entries_};
    RunningApplications running_{entries_, processes_, windows_, workspace_};
};

TEST_F(RunningApplicationsTest, NothingRunsUnderAnEmptyOrUnknownIdentifier) {
    windows_.show({.process = ::getpid(), .owner = {}});
    EXPECT_THAT(running(""), IsEmpty());
    EXPECT_THAT(running("org.example.Nothing"), IsEmpty());
}

TEST_F(RunningApplicationsTest, ProcessesThatShowWindowsAreInstancesTheLongestRunningFirst) {
    const auto first = start("any", "stay");
    const auto second = start("any", "stay");
    showWindow(*second, "org.example.App");
    showWindow(*first, "org.example.App");
    showWindow(*second, "org.example.App");
    EXPECT_THAT(running("org.example.App"), ElementsAre(first->pid(), second->pid()));
    EXPECT_THAT(running("org.example.App"), ElementsAre(first->pid(), second->pid()));
}

TEST_F(RunningApplicationsTest, AWindowWhoseProcessTheDesktopDoesNotKnowIsAnInstance) {
    install("org.example.App");
    const auto helper = start("org.example.App", "stay");
    windows_.show({.process = -3, .owner = {.name = "App", .bundleIdentifier = "org.example.App"}});
    EXPECT_THAT(running("org.example.App"), ElementsAre(-3));
    const auto known = start("any", "stay");
    showWindow(*known, "org.example.App");
    EXPECT_THAT(running("org.example.App"), ElementsAre(known->pid(), -3));
}

TEST_F(RunningApplicationsTest, AWindowWhoseProcessIsGoneIsNoInstance) {
    auto process = start("any", "stay");
    showWindow(*process, "org.example.App");
    process.reset();
    EXPECT_THAT(running("org.example.App"), IsEmpty());
}

TEST_F(RunningApplicationsTest, AWindowWhoseProcessHasEndedIsNoInstanceBesideOneThatLives) {
    const auto dead = start("any", "stay");
    const auto alive = start("any", "stay");
    showWindow(*dead, "org.example.App");
    showWindow(*alive, "org.example.App");
    end(*dead);
    EXPECT_THAT(running("org.example.App"), ElementsAre(alive->pid()));
    end(*alive);
    EXPECT_THAT(running("org.example.App"), IsEmpty());
}

TEST_F(RunningApplicationsTest, AWindowlessProcessIsFoundByItsProgram) {
    install("org.example.tray");
    const auto process = start("org.example.tray", "stay");
    EXPECT_THAT(running("org.example.tray"), ElementsAre(process->pid()));
}

TEST_F(RunningApplicationsTest, AWindowlessProcessIsFoundByItsLaunch) {
    const auto path = home_.addEntry("wrapped", "sh -c \"exec something\"");
    home_.write(home_.path() / "go", "export GIO_LAUNCHED_DESKTOP_FILE_PID=$$\n"
                                     "exec \"$@\"\n");
    ChildProcess process({"/bin/sh", (home_.path() / "go").string(), home_.program("elsewhere"),
                          home_.reports().string(), "stay"},
                         {{"GIO_LAUNCHED_DESKTOP_FILE", path}});
    home_.awaitWitnesses(1);
    EXPECT_THAT(running("wrapped"), ElementsAre(process.pid()));
}

TEST_F(RunningApplicationsTest, AnInheritedLaunchEnvironmentIsNotBelieved) {
    const auto path = home_.addEntry("parent", "true");
    const auto process = start("elsewhere", "stay",
                               {{"GIO_LAUNCHED_DESKTOP_FILE", path},
                                {"GIO_LAUNCHED_DESKTOP_FILE_PID", std::to_string(::getpid())}});
    EXPECT_THAT(running("parent"), IsEmpty());
}

TEST_F(RunningApplicationsTest, SeveralWindowlessInstancesComeTheLongestRunningFirst) {
    install("org.example.twice");
    const auto first = start("org.example.twice", "stay");
    const auto second = start("org.example.twice", "stay");
    EXPECT_THAT(running("org.example.twice"), ElementsAre(first->pid(), second->pid()));
}

TEST_F(RunningApplicationsTest, ChildrenOfAnInstanceAreItsHelpers) {
    install("org.example.browser");
    const auto process = start("org.example.browser", "parent");
    EXPECT_THAT(running("org.example.browser"), ElementsAre(process->pid()));
}

TEST_F(RunningApplicationsTest, BesideAWindowTheWindowlessAreHelpers) {
    install("org.example.daemon");
    const auto daemon = start("org.example.daemon", "stay");
    const auto window = start("org.example.daemon", "stay");
    showWindow(*window, "org.example.daemon");
    EXPECT_THAT(running("org.example.daemon"), ElementsAre(window->pid()));
}

TEST_F(RunningApplicationsTest, AProcessOfAnotherDisplayIsNotOfThisSession) {
    ::setenv("DISPLAY", ":7", 1);
    install("org.example.remote");
    const auto theirs = start("org.example.remote", "stay", {{"DISPLAY", ":8"}});
    EXPECT_THAT(running("org.example.remote"), IsEmpty());
    const auto ours = start("org.example.remote", "stay", {{"DISPLAY", ":7.0"}});
    EXPECT_THAT(running("org.example.remote"), ElementsAre(ours->pid()));
}

TEST_F(RunningApplicationsTest, AProcessOfAnotherCompositorIsNotOfThisSession) {
    ::setenv("WAYLAND_DISPLAY", "wayland-7", 1);
    ::setenv("XDG_RUNTIME_DIR", "/run/example", 1);
    ::setenv("DISPLAY", ":7", 1);
    install("org.example.remote");
    const auto elsewhere = start("org.example.remote", "stay",
                                 {{"WAYLAND_DISPLAY", "wayland-8"}, {"DISPLAY", std::nullopt}});
    const auto onXElsewhere =
        start("org.example.remote", "stay", {{"WAYLAND_DISPLAY", std::nullopt}, {"DISPLAY", ":8"}});
    EXPECT_THAT(running("org.example.remote"), IsEmpty());
    const auto native =
        start("org.example.remote", "stay",
              {{"WAYLAND_DISPLAY", "/run/example/wayland-7"}, {"DISPLAY", std::nullopt}});
    const auto onX =
        start("org.example.remote", "stay", {{"WAYLAND_DISPLAY", std::nullopt}, {"DISPLAY", ":7"}});
    EXPECT_THAT(running("org.example.remote"),
                testing::UnorderedElementsAre(native->pid(), onX->pid()));
}

TEST_F(RunningApplicationsTest, OnAnXServerAProcessOfACompositorIsNotOfThisSession) {
    ::setenv("DISPLAY", ":7", 1);
    install("org.example.remote");
    const auto theirs = start("org.example.remote", "stay",
                              {{"WAYLAND_DISPLAY", "wayland-7"}, {"DISPLAY", std::nullopt}});
    EXPECT_THAT(running("org.example.remote"), IsEmpty());
    const auto ours =
        start("org.example.remote", "stay", {{"WAYLAND_DISPLAY", "wayland-7"}, {"DISPLAY", ":7"}});
    EXPECT_THAT(running("org.example.remote"), ElementsAre(ours->pid()));
}

// At its start a process shows its program's file before its environment, at its end after it.
TEST_F(RunningApplicationsTest, AProcessOfAnotherDisplayIsNotOfThisSessionWhileItStartsAndEnds) {
    ::setenv("DISPLAY", ":7", 1);
    install("org.example.remote");
    const std::vector<std::string> program{home_.program("org.example.remote"),
                                           home_.reports().string(), "stay"};
    for (int round = 1; round <= 150; ++round) {
        const ChildProcess theirs(program, {{"DISPLAY", ":8"}});
        const auto report = home_.reports() / std::to_string(theirs.pid());
        while (!std::filesystem::exists(report)) {
            ASSERT_THAT(running("org.example.remote"), IsEmpty()) << round;
        }
        theirs.signal(SIGKILL);
        while (test::processState(theirs.pid()) != "Z") {
            ASSERT_THAT(running("org.example.remote"), IsEmpty()) << round;
        }
        std::filesystem::remove(report);
    }
}

TEST_F(RunningApplicationsTest, AnInstanceThatEndsIsSeenToBeGone) {
    install("org.example.brief");
    auto process = start("org.example.brief", "stay");
    EXPECT_THAT(running("org.example.brief"), ElementsAre(process->pid()));
    process.reset();
    EXPECT_THAT(running("org.example.brief"), IsEmpty());
}

TEST_F(RunningApplicationsTest, AnInstanceNobodyHasWaitedForIsTerminated) {
    install("org.example.zombie");
    const auto process = start("org.example.zombie", "stay");
    EXPECT_THAT(running("org.example.zombie"), ElementsAre(process->pid()));
    end(*process);
    const auto applications = running_.withBundleIdentifier("org.example.zombie");
    ASSERT_EQ(applications.size(), 1U);
    EXPECT_EQ(applications[0].processIdentifier, process->pid());
    EXPECT_TRUE(applications[0].isTerminated);
}

TEST_F(RunningApplicationsTest, ALiveInstanceComesBeforeATerminatedOne) {
    install("org.example.survivor");
    const auto dead = start("org.example.survivor", "stay");
    const auto alive = start("org.example.survivor", "stay");
    EXPECT_THAT(running("org.example.survivor"), ElementsAre(dead->pid(), alive->pid()));
    end(*dead);
    EXPECT_THAT(running("org.example.survivor"), ElementsAre(alive->pid(), dead->pid()));
}

TEST_F(RunningApplicationsTest, AProcessThatBecomesTheProgramLaterIsFoundThen) {
    install("org.example.late");
    const auto gate = home_.path() / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    home_.write(home_.path() / "go", "read line < \"$1\"\nshift\nexec \"$@\"\n");
    ChildProcess process({"/bin/sh", (home_.path() / "go").string(), gate.string(),
                          home_.program("org.example.late"), home_.reports().string(), "stay"});
    EXPECT_THAT(running("org.example.late"), IsEmpty());
    std::ofstream(gate) << "go\n";
    home_.awaitWitnesses(1);
    EXPECT_THAT(running("org.example.late"), ElementsAre(process.pid()));
}

TEST_F(RunningApplicationsTest, AnApplicationInstalledWhileItsProgramRunsIsFound) {
    const auto process = start("org.example.fresh", "stay");
    EXPECT_THAT(running("org.example.fresh"), IsEmpty());
    install("org.example.fresh");
    EXPECT_THAT(running("org.example.fresh"), ElementsAre(process->pid()));
}

TEST_F(RunningApplicationsTest, AProcessIsLookedUpByItsNumber) {
    install("org.example.app");
    const auto process = start("org.example.app", "stay");
    const auto application = running_.withProcessIdentifier(process->pid());
    ASSERT_TRUE(application);
    EXPECT_EQ(application->processIdentifier, process->pid());
    EXPECT_EQ(application->bundleIdentifier, "org.example.app");
    EXPECT_FALSE(application->isTerminated);
}

TEST_F(RunningApplicationsTest, AProcessWithAWindowIsAnApplicationEvenWithoutAnEntry) {
    const auto process = start("nameless", "stay");
    EXPECT_FALSE(running_.withProcessIdentifier(process->pid()));
    windows_.show({.process = process->pid(), .owner = {.name = "X", .bundleIdentifier = ""}});
    ASSERT_TRUE(running_.withProcessIdentifier(process->pid()));
    EXPECT_EQ(running_.withProcessIdentifier(process->pid())->bundleIdentifier, "");
}

TEST_F(RunningApplicationsTest, NoProcessIsNoApplication) {
    auto process = start("any", "stay");
    const auto number = process->pid();
    process.reset();
    EXPECT_FALSE(running_.withProcessIdentifier(number));
    EXPECT_FALSE(running_.withProcessIdentifier(0));
    EXPECT_FALSE(running_.withProcessIdentifier(-1));
}

TEST_F(RunningApplicationsTest, ActivatingOpensTheEntryAgain) {
    const auto path = home_.addEntry("org.example.app", "true");
    running_.activate({.processIdentifier = 1, .bundleIdentifier = "org.example.app"});
    EXPECT_THAT(log_.calls(), ElementsAre("workspace.openApplication " + path + " activating"));
}

TEST_F(RunningApplicationsTest, ActivatingWhatIsNotInstalledDoesNothing) {
    running_.activate({.processIdentifier = 1, .bundleIdentifier = "org.example.gone"});
    running_.activate({.processIdentifier = 1, .bundleIdentifier = ""});
    EXPECT_THAT(log_.calls(), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::freedesktop
