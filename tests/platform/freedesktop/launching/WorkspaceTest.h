#pragma once

#include "platform/freedesktop/ApplicationsHome.h"
#include "platform/freedesktop/launching/Workspace.h"
#include "support/ChildProcess.h"
#include "support/fakes/FakeLaunchFeedback.h"
#include "support/fakes/FakeMainQueue.h"
#include "support/fakes/FakeWindows.h"
#include "support/fakes/PolledRunLoop.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace hollowfernpike::freedesktop {

/// A workspace whose programs are real and report how they were started; windows, feedback and time
/// are in the test's hands.
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
    test::FakeLaunchFeedback feedback_;
    test::CallLog log_;
    test::FakeWindows windows_{log_};
    test::PolledRunLoop loop_;
    test::FakeMainQueue queue_;
    DesktopEntries entries_;
    ProcessTable processes_{entries_};
    Workspace workspace_{entries_, processes_, windows_, feedback_, nullptr, loop_, queue_};
};

} // namespace hollowfernpike::freedesktop
