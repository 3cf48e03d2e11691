#include "platform/freedesktop/owners/ProcessTable.h"

#include "platform/freedesktop/ApplicationsHome.h"
#include "platform/freedesktop/LateProgram.h"
#include "support/ChildProcess.h"
#include "support/OwnProcesses.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using test::ChildProcess;
using test::OwnProcesses;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::int32_t> numbersOf(const std::vector<LiveProcess>& processes) {
    std::vector<std::int32_t> numbers;
    for (const auto& process : processes) {
        numbers.push_back(process.number);
    }
    return numbers;
}

TEST(ProcessTableTest, ProcessesOfAnotherUserRunNoneOfOurApplications) {
    const test::ApplicationsHome home;
    home.addEntry("app", home.witness("stay"));
    const ChildProcess process({home.program(), home.reports().string(), "stay"});
    home.awaitWitnesses(1);
    DesktopEntries entries;
    ProcessTable ours(entries);
    EXPECT_THAT(numbersOf(ours.running("app")), ElementsAre(process.pid()));
    EXPECT_EQ(ours.applicationOf(process.pid()), "app");
    ProcessTable theirs(entries, ::geteuid() + 1);
    EXPECT_THAT(numbersOf(theirs.running("app")), IsEmpty());
    EXPECT_EQ(theirs.applicationOf(process.pid()), "");
}

/// Whether it is so old that the table no longer looks at it again because of its youth.
bool hasGrownUp(pid_t process) {
    const auto status = processStatus(process);
    return status && processClock() > status->startTime + clockTicks(std::chrono::seconds{3});
}

TEST(ProcessTableTest, AScriptThatBecomesTheProgramLongAfterItsStartIsFoundThen) {
    const test::ApplicationsHome home;
    home.addEntry("late", home.witnessNamed("late", "stay"));
    std::vector<std::unique_ptr<test::LateProgram>> programs;
    for (int number = 0; number < 10; ++number) {
        programs.push_back(std::make_unique<test::LateProgram>(home, "late", number));
    }
    DesktopEntries entries;
    ProcessTable table(entries);
    ASSERT_TRUE(test::waitUntil([&] { return hasGrownUp(programs.back()->pid()); }));
    std::size_t begun = 0;
    for (const auto& program : programs) {
        EXPECT_EQ(table.applicationOf(program->pid()), "");
        program->begin();
        ++begun;
        ASSERT_TRUE(test::waitUntil([&] {
            table.running("late"); // also while the script becomes the program
            return home.witnesses().size() == begun;
        }));
        EXPECT_EQ(table.applicationOf(program->pid()), "late");
    }
}

TEST(ProcessTableTest, AScriptThatBecomesAnotherScriptIsFoundAsThat) {
    const test::ApplicationsHome home;
    const auto gate = home.path() / "gate";
    const auto silent = home.path() / "silent"; // nobody writes there, so its reader stays
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(silent.c_str(), 0600), 0);
    const auto tool = home.write(home.path() / "tool", "#!/bin/sh\nread line < \"$1\"\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const auto wrapper =
        home.write(home.path() / "wrapper", "#!/bin/sh\nread line < \"$1\"\nshift\nexec \"$@\"\n");
    std::filesystem::permissions(wrapper, std::filesystem::perms::owner_all);
    home.addEntry("tool", tool + ' ' + silent.string());
    const ChildProcess process({wrapper, gate.string(), tool, silent.string()});
    DesktopEntries entries;
    ProcessTable table(entries);
    ASSERT_TRUE(test::waitUntil([&] { return hasGrownUp(process.pid()); }));
    EXPECT_EQ(table.applicationOf(process.pid()), "");
    std::ofstream(gate) << "go\n";
    EXPECT_TRUE(test::waitUntil([&] { return table.applicationOf(process.pid()) == "tool"; }));
}

TEST(ProcessTableTest, AProgramWithAnEmptyEnvironmentIsFound) {
    const test::ApplicationsHome home;
    home.addEntry("bare", home.witnessNamed("bare", "stay"));
    const ChildProcess process(
        {"env", "-i", home.program("bare"), home.reports().string(), "stay"});
    DesktopEntries entries;
    ProcessTable table(entries);
    EXPECT_TRUE(test::waitUntil([&] { return table.applicationOf(process.pid()) == "bare"; }));
}

TEST(ProcessTableTest, AProcessThatEndsIsKnownToTheEnd) {
    const test::ApplicationsHome home;
    home.addEntry("brief", home.witnessNamed("brief", "stay"));
    DesktopEntries entries;
    ProcessTable table(entries);
    for (std::size_t round = 1; round <= 60; ++round) {
        const ChildProcess process({home.program("brief"), home.reports().string(), "stay"});
        home.awaitWitnesses(round);
        ASSERT_EQ(table.applicationOf(process.pid()), "brief");
        process.signal(SIGKILL);
        while (test::processState(process.pid()) != "Z") {
            ASSERT_EQ(table.applicationOf(process.pid()), "brief") << round;
        }
    }
}

void giveANumberOutAgain() {
    const test::ApplicationsHome home;
    home.addEntry("before", home.witnessNamed("before", "stay"));
    home.addEntry("after", home.witnessNamed("after", "stay"));
    DesktopEntries entries;
    ProcessTable table(entries);

    std::optional<ChildProcess> before;
    before.emplace(
        std::vector{home.program("before"), home.reports().string(), std::string("stay")});
    const ChildProcess later({home.program(), home.reports().string(), "stay"});
    const auto number = before->pid();
    ASSERT_TRUE(test::waitUntil([&] { return hasGrownUp(number); }));
    ASSERT_THAT(numbersOf(table.running("before")), ElementsAre(number));

    before.reset();
    OwnProcesses::giveOutNext(number);
    const ChildProcess after({home.program("after"), home.reports().string(), "stay"});
    ASSERT_EQ(after.pid(), number);
    ASSERT_TRUE(test::waitUntil([&] {
        const auto facts = processFacts(number);
        return facts.executable == home.program("after") && facts.hasEnvironment;
    }));
    EXPECT_THAT(numbersOf(table.running("after")), ElementsAre(number));
    EXPECT_THAT(numbersOf(table.running("before")), IsEmpty());
}

TEST(ProcessTableTest, ANumberThatIsGivenOutAgainIsAnotherProcess) {
    EXPECT_EXIT(OwnProcesses::run(giveANumberOutAgain), testing::ExitedWithCode(0), "");
}

} // namespace

} // namespace hollowfernpike::freedesktop
