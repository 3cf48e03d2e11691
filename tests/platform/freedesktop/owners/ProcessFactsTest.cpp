#include "platform/freedesktop/owners/ProcessFacts.h"

#include "support/ChildProcess.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using test::ChildProcess;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// While a program is being loaded, its file, its arguments and its environment appear one by one.
bool hasStarted(const ChildProcess& process, const std::string& program,
                const std::string& display) {
    return test::waitUntil([&] {
        const auto facts = processFacts(process.pid());
        return facts.executable.ends_with(program) && facts.display == display;
    });
}

TEST(ProcessFactsTest, TellProgramArgumentsAndDisplay) {
    ChildProcess process({"/usr/bin/sleep", "300"}, {{"DISPLAY", ":42.1"}});
    ASSERT_TRUE(hasStarted(process, "/sleep", ":42.1"));
    const auto facts = processFacts(process.pid());
    EXPECT_THAT(facts.commandLine, ElementsAre("/usr/bin/sleep", "300"));
    EXPECT_EQ(facts.display, ":42.1");
    EXPECT_EQ(facts.flatpakApplication, "");
    EXPECT_EQ(facts.controlGroup.substr(0, 1), "/");
}

TEST(ProcessFactsTest, ACompositorIsKnownByThePathOfItsSocket) {
    ChildProcess process(
        {"/usr/bin/sleep", "300"},
        {{"DISPLAY", ":1"}, {"WAYLAND_DISPLAY", "wayland-7"}, {"XDG_RUNTIME_DIR", "/run/example"}});
    ASSERT_TRUE(hasStarted(process, "/sleep", ":1"));
    EXPECT_EQ(processFacts(process.pid()).waylandSocket, "/run/example/wayland-7");
    EXPECT_EQ(waylandSocket("/somewhere/else", "/run/example"), "/somewhere/else");
    EXPECT_EQ(waylandSocket("", "/run/example"), "");
}

TEST(ProcessFactsTest, TheLaunchEnvironmentCountsOnlyForTheProcessThatItNames) {
    ChildProcess process(
        {"/bin/sh", "-c", "GIO_LAUNCHED_DESKTOP_FILE_PID=$$ exec /usr/bin/sleep 300"},
        {{"GIO_LAUNCHED_DESKTOP_FILE", "/a/b.desktop"}, {"DISPLAY", ":1"}});
    ASSERT_TRUE(hasStarted(process, "/sleep", ":1"));
    EXPECT_EQ(processFacts(process.pid()).launchedEntry, "/a/b.desktop");
    ChildProcess other({"/usr/bin/sleep", "300"}, {{"GIO_LAUNCHED_DESKTOP_FILE", "/a/b.desktop"},
                                                   {"GIO_LAUNCHED_DESKTOP_FILE_PID", "1"},
                                                   {"DISPLAY", ":2"}});
    ASSERT_TRUE(hasStarted(other, "/sleep", ":2"));
    EXPECT_EQ(processFacts(other.pid()).launchedEntry, "");
}

TEST(ProcessFactsTest, ALaunchEnvironmentWithoutANumberIsAboutOurChildNotItsChildren) {
    ChildProcess process({"/bin/sh", "-c", "sleep 300 & echo child $!; wait"},
                         {{"GIO_LAUNCHED_DESKTOP_FILE", "/a/b.desktop"},
                          {"GIO_LAUNCHED_DESKTOP_FILE_PID", std::nullopt}});
    const auto line = process.waitForLine("child ");
    ASSERT_TRUE(line);
    EXPECT_EQ(processFacts(process.pid()).launchedEntry, "/a/b.desktop");
    const auto child = std::stoi(line->substr(line->find(' ')));
    EXPECT_TRUE(
        test::waitUntil([&] { return processFacts(child).executable.ends_with("/sleep"); }));
    EXPECT_EQ(processFacts(child).launchedEntry, "");
}

TEST(ProcessFactsTest, AProcessThatIsNotThereTellsNothing) {
    EXPECT_FALSE(processStatus(-1));
    EXPECT_FALSE(processStatus(0));
    EXPECT_EQ(processFacts(-1).executable, "");
    EXPECT_THAT(processFacts(0).commandLine, IsEmpty());
}

TEST(ProcessFactsTest, TheStatusTellsParentAgeAndEnd) {
    ChildProcess process({"/usr/bin/sleep", "300"});
    const auto before = processStatus(process.pid());
    ASSERT_TRUE(before);
    EXPECT_EQ(before->parent, ::getpid());
    EXPECT_FALSE(before->hasEnded);
    EXPECT_GE(before->startTime, processStatus(::getpid())->startTime);
    process.signal(SIGKILL);
    EXPECT_TRUE(test::waitUntil([&] { return processStatus(process.pid())->hasEnded; }));
    EXPECT_EQ(processStatus(process.pid())->startTime, before->startTime);
}

TEST(ProcessFactsTest, AProgramNameWithParenthesesAndSpacesIsNoTrap) {
    const auto program =
        std::filesystem::temp_directory_path() / ("a) Z (b" + std::to_string(::getpid()));
    std::filesystem::copy_file("/usr/bin/sleep", program);
    ChildProcess process({program.string(), "300"}, {{"DISPLAY", ":3"}});
    EXPECT_TRUE(hasStarted(process, program.string(), ":3"));
    EXPECT_EQ(processStatus(process.pid())->parent, ::getpid());
    EXPECT_FALSE(processStatus(process.pid())->hasEnded);
    std::filesystem::remove(program);
    EXPECT_EQ(processFacts(process.pid()).executable, program.string());
}

} // namespace

} // namespace hollowfernpike::freedesktop
