#include "hotkeys/AppLauncher.h"

#include "support/fakes/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using platform::WindowInfo;
using testing::ElementsAre;
using testing::Eq;

constexpr auto composed = "Caf\u00E9";
constexpr auto decomposed = "Cafe\u0301";

WindowInfo window(const std::string& ownerName, std::int32_t ownerProcess, std::int32_t layer = 0) {
    return {.ownerName = ownerName, .ownerProcess = ownerProcess, .layer = layer};
}

class AppLauncherTest : public testing::Test {
protected:
    static std::optional<std::int32_t> find(std::string_view name) {
        return AppLauncher::shared().findPIDByWindowOwnerName(name);
    }

    static void perform(const std::string& bundleIdentifier = "org.example.Editor") {
        AppLauncher::shared().performLaunchOrActivate(bundleIdentifier, "Editor",
                                                      "/applications/Editor.desktop");
    }

    void show(std::vector<WindowInfo> windows) { desktop.windows.visible = std::move(windows); }

    void run(std::int32_t process, const std::string& bundleIdentifier, bool isTerminated = false) {
        desktop.runningApplications.applications.push_back({.processIdentifier = process,
                                                            .bundleIdentifier = bundleIdentifier,
                                                            .isTerminated = isTerminated});
    }

    test::FakeServices desktop;
};

TEST_F(AppLauncherTest, FindsNothingWithoutAWindowList) {
    desktop.windows.visible.reset();
    EXPECT_EQ(find("Editor"), std::nullopt);
}

TEST_F(AppLauncherTest, FindsNothingAmongNoWindows) {
    EXPECT_EQ(find("Editor"), std::nullopt);
    EXPECT_EQ(find(""), std::nullopt);
}

TEST_F(AppLauncherTest, FindsTheOwnerOfAWindowByName) {
    show({window("Player", 1), window("Editor", 2), window("Mail", 3)});
    EXPECT_THAT(find("Editor"), Eq(2));
    EXPECT_EQ(find("Calculator"), std::nullopt);
}

TEST_F(AppLauncherTest, FrontmostWindowWins) {
    show({window("Editor", 7), window("Editor", 8)});
    EXPECT_THAT(find("Editor"), Eq(7));
}

TEST_F(AppLauncherTest, SkipsAWindowWithoutOwnerName) {
    show({{.ownerName = {}, .ownerProcess = 1, .layer = 0}, window("Editor", 2)});
    EXPECT_THAT(find("Editor"), Eq(2));
    EXPECT_EQ(find(""), std::nullopt);
}

TEST_F(AppLauncherTest, SkipsAWindowWithoutOwnerProcess) {
    show({{.ownerName = "Editor", .ownerProcess = {}, .layer = 0}, window("Editor", 2)});
    EXPECT_THAT(find("Editor"), Eq(2));
}

TEST_F(AppLauncherTest, SkipsAWindowWithoutLayer) {
    show({{.ownerName = "Editor", .ownerProcess = 1, .layer = {}}, window("Editor", 2)});
    EXPECT_THAT(find("Editor"), Eq(2));
}

TEST_F(AppLauncherTest, SkipsAWindowOnAnotherLayer) {
    show({window("Editor", 1, 25), window("Editor", 2, -1), window("Editor", 3)});
    EXPECT_THAT(find("Editor"), Eq(3));
}

TEST_F(AppLauncherTest, NamesAreNeitherTrimmedNorCaseFolded) {
    show({window("editor", 1), window(" Editor", 2), window("Editor ", 3), window("Edit", 4)});
    EXPECT_EQ(find("Editor"), std::nullopt);
}

TEST_F(AppLauncherTest, DecomposedNameMatchesThePrecomposedOwner) {
    show({window(composed, 5)});
    EXPECT_THAT(find(decomposed), Eq(5));
}

TEST_F(AppLauncherTest, PrecomposedNameMatchesTheDecomposedOwner) {
    show({window(decomposed, 5)});
    EXPECT_THAT(find(composed), Eq(5));
}

TEST_F(AppLauncherTest, EquivalentWindowInFrontBeatsTheEqualOneBehind) {
    show({window(decomposed, 5), window(composed, 6)});
    EXPECT_THAT(find(composed), Eq(5));
}

TEST_F(AppLauncherTest, ASCIINameMatchesItsEquivalentOutsideASCII) {
    show({window("\u212Aeep", 5)});
    EXPECT_THAT(find("Keep"), Eq(5));
}

TEST_F(AppLauncherTest, TextsAreComparedByTheirFormOnlyWhereTheyCanDiffer) {
    show({window("Player", 1), window("Editor", 2)});
    find("Editor");
    EXPECT_THAT(desktop.log.calls(), ElementsAre("windows.copyWindowInfo"));
}

TEST_F(AppLauncherTest, WindowOfTheNameComesToTheFront) {
    show({window("Editor", 42)});
    run(42, "org.example.Editor");
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, WindowNameBeatsABundleIdentifierOfAnotherApplication) {
    show({window("Editor", 42)});
    run(43, "org.example.Other");
    perform("org.example.Other");
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, WindowNameIsEnoughWithAnEmptyBundleIdentifier) {
    show({window("Editor", 42)});
    perform("");
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, RunningApplicationWithoutVisibleWindowIsFoundByItsBundleIdentifier) {
    show({window("Player", 1), window("Editor", 42, 25)});
    run(42, "org.example.Editor");
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, OfTwoInstancesOnlyTheFirstIsBroughtForward) {
    run(42, "org.example.Editor");
    run(43, "org.example.Editor");
    desktop.windows.windowless = {42};
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "windows.bringToFront 42",
                            "runningApplications.withProcessIdentifier 42",
                            "runningApplications.activate 42"));
}

TEST_F(AppLauncherTest, TerminatedFirstInstanceLeadsToALaunchDespiteALivingSecond) {
    run(42, "org.example.Editor", true);
    run(43, "org.example.Editor");
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "workspace.openApplication /applications/Editor.desktop activating"));
}

TEST_F(AppLauncherTest, TerminatedSecondInstanceDoesNotMatter) {
    run(42, "org.example.Editor");
    run(43, "org.example.Editor", true);
    perform();
    EXPECT_THAT(desktop.log.calls(), testing::Contains("windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, ApplicationThatDoesNotRunIsLaunchedAndActivated) {
    run(42, "org.example.Other");
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "workspace.openApplication /applications/Editor.desktop activating"));
}

TEST_F(AppLauncherTest, EmptyBundleIdentifierFindsNoApplicationWithoutOne) {
    run(42, "");
    perform("");
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "runningApplications.withBundleIdentifier ",
                            "workspace.openApplication /applications/Editor.desktop activating"));
}

TEST_F(AppLauncherTest, PathIsHandedOverUntouched) {
    const std::string path = "relative/../ odd  path\t\u30D5.desktop ";
    AppLauncher::shared().performLaunchOrActivate("", "", path);
    EXPECT_EQ(desktop.log.calls().back(), "workspace.openApplication " + path + " activating");
}

TEST_F(AppLauncherTest, MissingWindowListGoesOnToTheBundleIdentifier) {
    desktop.windows.visible.reset();
    run(42, "org.example.Editor");
    perform();
    EXPECT_EQ(desktop.log.calls().back(), "windows.bringToFront 42");
}

TEST_F(AppLauncherTest, FailedBringToFrontActivatesTheApplicationOfTheProcess) {
    show({window("Editor", 42)});
    run(42, "org.example.SomethingElse");
    desktop.windows.windowless = {42};
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42",
                            "runningApplications.withProcessIdentifier 42",
                            "runningApplications.activate 42"));
}

TEST_F(AppLauncherTest, FailedBringToFrontOfAnUnknownProcessIsTheEnd) {
    show({window("Editor", 42)});
    run(43, "org.example.Editor");
    desktop.windows.windowless = {42};
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42",
                            "runningApplications.withProcessIdentifier 42"));
}

TEST_F(AppLauncherTest, InstanceThatVanishesWhileItIsBroughtForwardIsNotLaunched) {
    run(42, "org.example.Editor");
    desktop.windows.windowless = {42};
    desktop.windows.onBring = [this] { desktop.runningApplications.applications.clear(); };
    perform();
    EXPECT_EQ(desktop.log.calls().back(), "runningApplications.withProcessIdentifier 42");
}

TEST_F(AppLauncherTest, FailedLaunchIsSilent) {
    desktop.workspace.result = {.processIdentifier = {},
                                .error = platform::LocalizedError("ありません", "not there")};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    perform();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(desktop.log.calls().back(),
              "workspace.openApplication /applications/Editor.desktop activating");
    EXPECT_EQ(desktop.standardOutput.str(), "");
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(AppLauncherTest, ApplicationAlreadyInFrontIsBroughtForwardAgain) {
    show({window("Editor", 42)});
    perform();
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 42",
                            "windows.copyWindowInfo", "windows.bringToFront 42"));
}

TEST_F(AppLauncherTest, NothingIsKeptBetweenCalls) {
    show({window("Editor", 42)});
    perform();
    show({});
    run(43, "org.example.Editor");
    perform();
    desktop.runningApplications.applications.clear();
    desktop.log.clear();
    perform();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Editor",
                            "workspace.openApplication /applications/Editor.desktop activating"));
}

} // namespace

} // namespace hollowfernpike
