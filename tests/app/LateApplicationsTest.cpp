#include "app/LateApplications.h"

#include "support/FakeProcessActivation.h"
#include "support/FakeRunningApplications.h"
#include "support/FakeWindowList.h"
#include "support/FakeWorkspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LateApplicationsTest : public testing::Test {
protected:
    test::CallLog log;
    test::FakeProcessActivation processActivation{log};
    test::FakeRunningApplications runningApplications{log};
    test::FakeWindowList windowList{log};
    test::FakeWorkspace workspace{log};
    ApplicationServices services{processActivation, runningApplications, windowList, workspace};
    bool isReachable = false;
    LateApplications late{[this] { return isReachable ? &services : nullptr; }};
};

TEST_F(LateApplicationsTest, WhileThereIsNoDesktopNothingIsInSightOrRunsOrComesForward) {
    EXPECT_FALSE(late.copyWindowInfo());
    EXPECT_THAT(late.withBundleIdentifier("org.example.Editor"), IsEmpty());
    EXPECT_FALSE(late.withProcessIdentifier(42));
    EXPECT_FALSE(late.bringToFront(42));
    late.activate({.processIdentifier = 42, .bundleIdentifier = "org.example.Editor"});
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(LateApplicationsTest, WhileThereIsNoDesktopOpeningFailsAndSaysWhat) {
    std::vector<platform::OpenResult> results;
    late.openApplication("/applications/Editor.desktop", {},
                         [&](const auto& result) { results.push_back(result); });
    late.openApplication("/applications/Editor.desktop", {}, {});
    ASSERT_THAT(results, SizeIs(1));
    ASSERT_TRUE(results.front().error);
    EXPECT_THAT(results.front().error->english(), testing::HasSubstr("Editor.desktop"));
    EXPECT_THAT(results.front().error->japanese(), testing::HasSubstr("Editor.desktop"));
}

TEST_F(LateApplicationsTest, ADesktopThatComesLaterAnswersFromThenOn) {
    EXPECT_FALSE(late.bringToFront(42));
    isReachable = true;
    EXPECT_TRUE(late.bringToFront(42));
    late.copyWindowInfo();
    late.withBundleIdentifier("org.example.Editor");
    late.withProcessIdentifier(42);
    late.activate({.processIdentifier = 42, .bundleIdentifier = "org.example.Editor"});
    late.openApplication("/applications/Editor.desktop", {.activates = true}, {});
    EXPECT_THAT(log.calls(),
                ElementsAre("processActivation.bringToFront 42", "windowList.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "runningApplications.withProcessIdentifier 42",
                            "runningApplications.activate 42",
                            "workspace.openApplication /applications/Editor.desktop activating"));
}

} // namespace

} // namespace hollowfernpike
