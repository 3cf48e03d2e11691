#include "platform/macos/AccessibilityTrust.h"
#include "platform/macos/RunningApplications.h"
#include "platform/macos/Windows.h"
#include "platform/macos/Workspace.h"
#include "platform/macos/fakes/FakeMac.h"
#include "platform/macos/fakes/OtherThread.h"
#include "support/fakes/FakeMainQueue.h"

#include <limits>

#include <gmock/gmock.h>

namespace hollowfernpike::macos {

namespace {

using test::FakeMac;
using test::MacWindow;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

constexpr auto notUnicode = "\xFF";

TEST(AccessibilityTrustTest, OnlyThePromptPrompts) {
    FakeMac::shared().trusted = false;
    EXPECT_FALSE(AccessibilityTrust().isProcessTrusted());
    EXPECT_EQ(FakeMac::shared().prompts, 0);
    EXPECT_FALSE(AccessibilityTrust().isProcessTrustedWithPrompt());
    EXPECT_EQ(FakeMac::shared().prompts, 1);
    FakeMac::shared().trusted = true;
    EXPECT_TRUE(AccessibilityTrust().isProcessTrusted());
    EXPECT_TRUE(AccessibilityTrust().isProcessTrustedWithPrompt());
}

TEST(WindowsTest, ListsTheVisibleWindowsOfApplicationsFrontToBack) {
    FakeMac::shared().windows = {{.ownerName = "プレビュー", .ownerProcess = 2, .layer = 0},
                                 {.ownerName = "Dock", .ownerProcess = 3, .layer = 20}};
    const auto windows = Windows().copyWindowInfo();
    ASSERT_THAT(windows, Optional(SizeIs(2)));
    EXPECT_THAT((*windows)[0].ownerName, Optional(Eq("プレビュー")));
    EXPECT_THAT((*windows)[0].ownerProcess, Optional(2));
    EXPECT_THAT((*windows)[0].layer, Optional(0));
    EXPECT_THAT((*windows)[1].layer, Optional(20));
    EXPECT_THAT(FakeMac::shared().windowListOptions, ElementsAre(0x11));
}

TEST(WindowsTest, WhatIsMissingOrOfAnotherTypeIsAbsent) {
    constexpr auto tooLarge = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    auto& windows = FakeMac::shared().windows;
    windows = {MacWindow{.ownerName = {}, .ownerProcess = {}, .layer = {}},
               MacWindow{.ownerName = {}, .ownerProcess = tooLarge, .layer = -tooLarge - 1},
               MacWindow{.ownerName = "Mail", .ownerProcess = 1, .layer = 0}};
    for (const auto* key : {"kCGWindowOwnerName", "kCGWindowOwnerPID", "kCGWindowLayer"}) {
        windows->push_back({.ownerName = "Mail", .ownerProcess = 1, .layer = 0, .oddity = key});
    }
    const auto listed = Windows().copyWindowInfo();
    ASSERT_THAT(listed, Optional(SizeIs(6)));
    for (std::size_t absent = 0; absent < 2; ++absent) {
        EXPECT_FALSE((*listed)[absent].ownerName);
        EXPECT_FALSE((*listed)[absent].ownerProcess);
        EXPECT_FALSE((*listed)[absent].layer);
    }
    EXPECT_THAT((*listed)[2].ownerProcess, Optional(1));
    EXPECT_FALSE((*listed)[3].ownerName);
    EXPECT_FALSE((*listed)[4].ownerProcess);
    EXPECT_FALSE((*listed)[5].layer);
}

TEST(WindowsTest, AListOfSomethingElseIsNone) {
    FakeMac::shared().listsSomethingElse = true;
    EXPECT_FALSE(Windows().copyWindowInfo());
    FakeMac::shared().windows.reset();
    EXPECT_FALSE(Windows().copyWindowInfo());
}

TEST(WindowsTest, ComesToTheFrontAsIfTheUserHadAskedForIt) {
    FakeMac::shared().running = {{.process = 42}};
    EXPECT_TRUE(Windows().bringToFront(42));
    EXPECT_THAT(FakeMac::shared().requests, ElementsAre("serial number 42"));
}

TEST(WindowsTest, ThatFailingItIsAskedForByItsAttribute) {
    FakeMac::shared().running = {{.process = 42, .comesForward = false},
                                 {.process = 43, .hasSerialNumber = false}};
    EXPECT_TRUE(Windows().bringToFront(42));
    EXPECT_TRUE(Windows().bringToFront(43));
    EXPECT_THAT(FakeMac::shared().requests,
                ElementsAre("serial number 42", "attribute 42", "attribute 43"));
}

TEST(WindowsTest, WhoDoesNotComeAtAllIsToldOf) {
    FakeMac::shared().running = {{.process = 42, .comesForward = false, .takesAttribute = false}};
    EXPECT_FALSE(Windows().bringToFront(42));
    EXPECT_FALSE(Windows().bringToFront(43));
}

TEST(WindowsTest, TellsOfNoChangesAndNoHiddenWindows) {
    Windows windows;
    EXPECT_THAT(windows.clientWindows(), IsEmpty());
    EXPECT_FALSE(windows.watch([] {}));
}

TEST(RunningApplicationsTest, AreInTheOrderOfTheSystemEndedOnesAmongThem) {
    FakeMac::shared().running = {
        {.process = 9, .bundleIdentifier = "org.example.Mail", .isTerminated = true},
        {.process = 5, .bundleIdentifier = "org.example.Other"},
        {.process = 7, .bundleIdentifier = "org.example.Mail"}};
    const auto found = RunningApplications().withBundleIdentifier("org.example.Mail");
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0].processIdentifier, 9);
    EXPECT_TRUE(found[0].isTerminated);
    EXPECT_EQ(found[1].processIdentifier, 7);
    EXPECT_FALSE(found[1].isTerminated);
    EXPECT_EQ(found[1].bundleIdentifier, "org.example.Mail");
}

TEST(RunningApplicationsTest, NobodyRunsWithoutIdentifier) {
    FakeMac::shared().running = {{.process = 9}};
    EXPECT_THAT(RunningApplications().withBundleIdentifier(""), IsEmpty());
    EXPECT_THAT(RunningApplications().withBundleIdentifier(notUnicode), IsEmpty());
    const auto found = RunningApplications().withProcessIdentifier(9);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->bundleIdentifier, "");
    EXPECT_FALSE(RunningApplications().withProcessIdentifier(10));
}

TEST(RunningApplicationsTest, IsActivatedWithoutOptionsAndOpenedAgainIfThatIsRefused) {
    FakeMac::shared().running = {{.process = 42}};
    RunningApplications().activate({.processIdentifier = 42, .bundleIdentifier = {}});
    RunningApplications().activate({.processIdentifier = 43, .bundleIdentifier = {}});
    EXPECT_THAT(FakeMac::shared().requests, ElementsAre("activate 42"));
    FakeMac::shared().requests.clear();
    FakeMac::shared().running[0].activates = false;
    RunningApplications().activate({.processIdentifier = 42, .bundleIdentifier = {}});
    EXPECT_THAT(FakeMac::shared().requests,
                ElementsAre("activate 42", "open /Applications/42.app activating"));
}

class WorkspaceTest : public testing::Test {
protected:
    void open(const std::string& path, bool activates = true) {
        workspace_.openApplication(path, {.activates = activates},
                                   [this](const auto& result) { results_.push_back(result); });
    }

    test::FakeMainQueue queue_;
    Workspace workspace_{queue_};
    std::vector<platform::OpenResult> results_;
};

TEST_F(WorkspaceTest, HasTheSystemOpenIt) {
    open("/Applications/プレビュー.app");
    open("/Applications/Mail.app", false);
    EXPECT_THAT(FakeMac::shared().requests,
                ElementsAre("open /Applications/プレビュー.app activating",
                            "open /Applications/Mail.app in background"));
}

TEST_F(WorkspaceTest, TellsTheResultOnTheMainThreadAlthoughItComesOnAnother) {
    open("/Applications/Mail.app");
    test::onAnotherThread([] { FakeMac::shared().opening.front()(42, ""); });
    EXPECT_THAT(results_, IsEmpty());
    queue_.runDue();
    ASSERT_THAT(results_, SizeIs(1));
    EXPECT_THAT(results_[0].processIdentifier, Optional(42));
    EXPECT_FALSE(results_[0].error);
}

TEST_F(WorkspaceTest, TellsWhyItFailedInTheSystemsWords) {
    open("/Applications/Mail.app");
    FakeMac::shared().opening.front()(0, "damaged");
    queue_.runDue();
    ASSERT_THAT(results_, SizeIs(1));
    EXPECT_FALSE(results_[0].processIdentifier);
    ASSERT_TRUE(results_[0].error);
    EXPECT_EQ(results_[0].error->english(), "Cannot open the application: damaged");
    EXPECT_EQ(results_[0].error->japanese(), "アプリケーションを開けません: damaged");
}

TEST_F(WorkspaceTest, APathThatIsNoTextFails) {
    open(notUnicode);
    open("");
    queue_.runDue();
    EXPECT_THAT(FakeMac::shared().requests, IsEmpty());
    ASSERT_THAT(results_, SizeIs(2));
    EXPECT_TRUE(results_[0].error && results_[1].error);
}

TEST_F(WorkspaceTest, NeedsNobodyToTell) {
    workspace_.openApplication("/Applications/Mail.app", {.activates = true}, {});
    FakeMac::shared().opening.front()(42, "");
    EXPECT_EQ(queue_.pending(), 0);
}

} // namespace

} // namespace hollowfernpike::macos
