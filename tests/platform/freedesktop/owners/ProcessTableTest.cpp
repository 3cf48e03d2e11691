#include "platform/freedesktop/owners/ProcessTable.h"

#include "platform/freedesktop/ApplicationsHome.h"
#include "support/ChildProcess.h"
#include "support/OwnProcesses.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <fstream>
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

/// Old enough not to be looked at again for its youth.
bool hasGrownUp(pid_t process) {
    const auto status = processStatus(process);
    return status && processClock() > status->startTime + clockTicks(std::chrono::seconds{3});
}

TEST(ProcessTableTest, AScriptThatBecomesTheProgramLongAfterItsStartIsFoundThen) {
    const test::ApplicationsHome home;
    home.addEntry("late", home.witnessNamed("late", "stay"));
    const auto gate = home.path() / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    const auto script = home.write(home.path() / "go", "read line < \"$1\"\nshift\nexec \"$@\"\n");
    const ChildProcess process(
        {"/bin/sh", script, gate.string(), home.program("late"), home.reports().string(), "stay"});
    DesktopEntries entries;
    ProcessTable table(entries);
    ASSERT_TRUE(test::waitUntil([&] { return hasGrownUp(process.pid()); }));
    EXPECT_THAT(numbersOf(table.running("late")), IsEmpty());
    std::ofstream(gate) << "go\n";
    home.awaitWitnesses(1);
    EXPECT_THAT(numbersOf(table.running("late")), ElementsAre(process.pid()));
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
