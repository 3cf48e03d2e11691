#include "platform/x11/LaunchFeedback.h"

#include "platform/x11/windows/StartupMonitor.h"
#include "platform/x11/windows/WindowsTest.h"
#include "support/KeyInjector.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class LaunchFeedbackTest : public WindowsTest {
protected:
    explicit LaunchFeedbackTest(const std::string& windowManager = "")
        : WindowsTest(windowManager), monitor_(desktop_.display()) {}

    bool noticesBecome(std::size_t count) {
        return waitUntil([&] { return monitor_.notices().size() == count; });
    }

    StartupMonitor monitor_;
    x11::LaunchFeedback feedback_{windows_, userTime_};
    platform::StartingApplication editor_{.name = "Text Editor",
                                          .bundleIdentifier = "org.example.Editor",
                                          .entryPath = "/apps/org.example.Editor.desktop",
                                          .program = "editor",
                                          .windowClass = "Editor",
                                          .announces = true};
};

TEST_F(LaunchFeedbackTest, AnnouncesTheStart) {
    userTime_.record(123456, {});
    const auto id = feedback_.begin(editor_);
    ASSERT_TRUE(noticesBecome(1));
    const auto& notice = monitor_.notices().front();
    EXPECT_EQ(notice.event, "new");
    EXPECT_EQ(notice.id, id);
    EXPECT_EQ(notice.name, "Text Editor");
    EXPECT_EQ(notice.binary, "editor");
    EXPECT_EQ(notice.windowClass, "Editor");
    EXPECT_EQ(notice.application, "/apps/org.example.Editor.desktop");
    EXPECT_EQ(notice.screen, 0);
    EXPECT_EQ(notice.time, 123456U);
}

TEST_F(LaunchFeedbackTest, TakesTheNoticeBack) {
    userTime_.record(123456, {});
    const auto id = feedback_.begin(editor_);
    feedback_.end(id);
    ASSERT_TRUE(noticesBecome(2));
    EXPECT_EQ(monitor_.notices().back().event, "remove");
    EXPECT_EQ(monitor_.notices().back().id, id);
}

TEST_F(LaunchFeedbackTest, CarriesTheTimeOfThePressInTheIdentifier) {
    userTime_.record(123456, {});
    EXPECT_THAT(feedback_.begin(editor_), EndsWith("_TIME123456"));
    userTime_.record(4294967295, {});
    EXPECT_THAT(feedback_.begin(editor_), EndsWith("_TIME4294967295"));
}

TEST_F(LaunchFeedbackTest, MakesUpNoTimeBeforeTheFirstPress) {
    const auto id = feedback_.begin(editor_);
    EXPECT_THAT(id, Not(IsEmpty()));
    EXPECT_THAT(id, Not(HasSubstr("_TIME")));
    EXPECT_TRUE(noticesBecome(1));
}

TEST_F(LaunchFeedbackTest, GivesEveryStartItsOwnIdentifier) {
    userTime_.record(123456, {});
    const auto first = feedback_.begin(editor_);
    EXPECT_NE(feedback_.begin(editor_), first);
}

TEST_F(LaunchFeedbackTest, CountsARepeatedPressOnce) {
    EXPECT_EQ(feedback_.holdCount(), 0U);
    userTime_.record(1000, {});
    userTime_.record(1660, {});
    EXPECT_EQ(feedback_.holdCount(), 1U);
    userTime_.record(5000, {});
    EXPECT_EQ(feedback_.holdCount(), 2U);
}

TEST_F(LaunchFeedbackTest, KeepsQuietForApplicationsThatWouldNotEndTheNotice) {
    userTime_.record(123456, {});
    editor_.announces = false;
    EXPECT_THAT(feedback_.begin(editor_), EndsWith("_TIME123456"));
    editor_.announces = true;
    const auto announced = feedback_.begin(editor_);
    ASSERT_TRUE(noticesBecome(1));
    EXPECT_EQ(monitor_.notices().front().id, announced);
}

TEST_F(LaunchFeedbackTest, QuotesWhatTheEntrySays) {
    editor_.name = R"(Bob's "big" \ editor = 文書 ID=x)";
    editor_.program = "";
    feedback_.begin(editor_);
    ASSERT_TRUE(noticesBecome(1));
    EXPECT_EQ(monitor_.notices().front().name, editor_.name);
    EXPECT_EQ(monitor_.notices().front().binary, "");
    EXPECT_EQ(monitor_.notices().front().windowClass, "Editor");
}

TEST_F(LaunchFeedbackTest, CutsWhatIsTooLongBetweenCharacters) {
    std::string expected;
    for (int count = 0; count < 170; ++count) {
        expected += "長";
    }
    editor_.name = expected;
    for (int count = 0; count < 100'000; ++count) {
        editor_.name += "長";
    }
    feedback_.begin(editor_);
    ASSERT_TRUE(noticesBecome(1));
    EXPECT_EQ(monitor_.notices().front().name, expected);
}

TEST_F(LaunchFeedbackTest, EndsNothingThatItDidNotBegin) {
    const auto id = feedback_.begin(editor_);
    for (const auto* unknown : {"", "somebody-else_TIME1", "remove"}) {
        feedback_.end(unknown);
    }
    feedback_.end(id);
    ASSERT_TRUE(noticesBecome(2));
    EXPECT_EQ(monitor_.notices().back().id, id);
}

TEST_F(LaunchFeedbackTest, WaitsForNothing) {
    // A stopped server answers nobody; what needs an answer would wait here for ever.
    ASSERT_NE(windows_.reader(), nullptr) << "whoever launches has looked at the windows before";
    auto& server = desktop_.virtualDisplay().server();
    server.signal(SIGSTOP);
    const auto id = feedback_.begin(editor_);
    feedback_.end(id);
    server.signal(SIGCONT);
    EXPECT_TRUE(noticesBecome(2));
}

TEST_F(LaunchFeedbackTest, HasNothingToOfferOnceTheServerIsGone) {
    desktop_.virtualDisplay().server().signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return feedback_.begin(editor_).empty(); }));
    feedback_.end("anything");
}

/// With the window manager that withholds the focus from windows nobody asked for.
class FeedbackAndFocusTest : public LaunchFeedbackTest {
protected:
    FeedbackAndFocusTest() : LaunchFeedbackTest("metacity") {}

    std::unique_ptr<ChildProcess> launch(const std::string& id) {
        auto environment = desktop_.environment();
        environment["DESKTOP_STARTUP_ID"] = id;
        return std::make_unique<ChildProcess>(std::vector<std::string>{HFP_PROBE_WINDOW},
                                              environment);
    }
};

TEST_F(FeedbackAndFocusTest, TheFirstWindowEndsTheNoticeAndTakesTheFocus) {
    const auto front = openActive("Front");
    pressKey();
    const auto id = feedback_.begin(editor_);
    const auto process = launch(id);
    EXPECT_TRUE(process->waitForLine("focus-in"));
    ASSERT_TRUE(noticesBecome(2));
    EXPECT_EQ(monitor_.notices().back().event, "remove");
    EXPECT_EQ(monitor_.notices().back().id, id);
}

TEST_F(FeedbackAndFocusTest, AWindowOfAnOlderPressDoesNotInterruptTheUser) {
    const auto front = openActive("Front");
    pressKey();
    const auto id = feedback_.begin(editor_);
    KeyInjector keys(desktop_.display());
    const auto typed = [&] {
        keys.strike({"AC01"});
        const auto times = observer_.numbers(front.window(), "_NET_WM_USER_TIME");
        return !times.empty() && times.front() > userTime_.time();
    };
    ASSERT_TRUE(waitUntil(typed));
    const auto process = launch(id);
    const auto line = process->waitForLine("window ").value();
    const auto window = static_cast<xcb_window_t>(std::stoul(line.substr(line.find(' '))));
    EXPECT_TRUE(
        waitUntil([&] { return observer_.hasState(window, "_NET_WM_STATE_DEMANDS_ATTENTION"); }));
    EXPECT_EQ(observer_.activeWindow(), front.window());
}

} // namespace

} // namespace hollowfernpike::test
