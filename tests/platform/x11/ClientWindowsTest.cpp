#include "platform/x11/ClientWindows.h"

#include "platform/x11/WindowsTest.h"
#include "support/PolledRunLoop.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ClientWindowsTest : public WindowsTest {
protected:
    std::vector<std::string> owners() {
        std::vector<std::string> result;
        for (const auto& window : clientWindows_.clientWindows()) {
            result.push_back(window.owner.name);
        }
        return result;
    }

    PolledRunLoop runLoop_;
    x11::ClientWindows clientWindows_{windows_, runLoop_};
};

TEST_F(ClientWindowsTest, AreListedOldestFirst) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    const auto third = openActive("Third");
    observer_.activate(first.window(), XCB_CURRENT_TIME);
    ASSERT_TRUE(becomesActive(first.window()));
    EXPECT_TRUE(waitUntil([&] { return names().front() == "First"; }));

    EXPECT_THAT(owners(), ElementsAre("First", "Second", "Third"));
    EXPECT_EQ(clientWindows_.clientWindows().at(1).process, second.pid());
}

TEST_F(ClientWindowsTest, IncludeWhatIsOutOfSight) {
    const auto minimised = openActive("Minimised");
    const auto away = openActive("Away");
    observer_.minimise(minimised.window());
    observer_.moveToDesktop(away.window(), 3);
    ASSERT_TRUE(namesBecome({}));
    EXPECT_THAT(owners(), ElementsAre("Minimised", "Away"));
}

TEST_F(ClientWindowsTest, LeaveOutWhatIsNoWindowOfAnApplication) {
    const auto dock = open("Dock", {"--type", "dock"});
    const auto desktop = open("Desktop", {"--type", "desktop"});
    const auto dialog = open("Dialog", {"--type", "dialog"});
    EXPECT_THAT(owners(), ElementsAre("Dialog"));
}

TEST_F(ClientWindowsTest, AskNothingAgainRightAfterTheListOfTheSamePress) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    observer_.activate(first.window(), XCB_CURRENT_TIME);
    ASSERT_TRUE(becomesActive(first.window()));
    pressKey();
    ASSERT_TRUE(namesBecome({"First", "Second"}));
    EXPECT_EQ(requestsDuring(*connection_, [&] { EXPECT_THAT(owners(), SizeIs(2)); }), 0U);
    for (int time = 0; time < 3; ++time) {
        EXPECT_GT(requestsDuring(*connection_, [&] { EXPECT_THAT(owners(), SizeIs(2)); }), 0U)
            << "what has changed since matters to who asks again";
    }
}

TEST_F(ClientWindowsTest, AskAgainWhenTheListOfTheSamePressIsTooOld) {
    const auto application = open("Editor");
    x11::Windows windows(*connection_, owners_, userTime_, std::chrono::milliseconds::zero());
    pressKey();
    ASSERT_NE(windows.read(x11::SnapshotUse::matching), nullptr);
    x11::ClientWindows clientWindows(windows, runLoop_);
    EXPECT_GT(requestsDuring(*connection_,
                             [&] { EXPECT_THAT(clientWindows.clientWindows(), SizeIs(1)); }),
              0U);
}

TEST_F(ClientWindowsTest, AreListedOldestFirstAfterTheListOfTheSamePress) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    pressKey();
    ASSERT_TRUE(namesBecome({"Second", "First"}));
    EXPECT_THAT(owners(), ElementsAre("First", "Second"));
}

TEST_F(ClientWindowsTest, TellOfWindowsThatComeAndGo) {
    int changes = 0;
    const auto watch = clientWindows_.watch([&] { ++changes; });
    {
        const auto application = desktop_.start({HFP_PROBE_WINDOW, "--class", "p,New"});
        EXPECT_TRUE(runLoop_.runUntil(
            [&] { return changes > 0 && owners() == std::vector<std::string>{"New"}; }));
        changes = 0;
    }
    EXPECT_TRUE(runLoop_.runUntil([&] { return changes > 0 && owners().empty(); }));
}

TEST_F(ClientWindowsTest, TellOfAChangeThatWasReadOffByAnotherQuestion) {
    int changes = 0;
    const auto watch = clientWindows_.watch([&] { ++changes; });
    const auto application = open("New");
    EXPECT_TRUE(namesBecome({"New"}));
    EXPECT_EQ(changes, 0) << "told from within a question";
    EXPECT_TRUE(runLoop_.runUntil([&] { return changes > 0; }));
}

TEST_F(ClientWindowsTest, TellNobodyWhoHasLeft) {
    int left = 0;
    int stayed = 0;
    auto leaving = clientWindows_.watch([&] { ++left; });
    const auto staying = clientWindows_.watch([&] { ++stayed; });
    leaving.reset();
    const auto application = open("New");
    EXPECT_TRUE(runLoop_.runUntil([&] { return stayed > 0; }));
    EXPECT_EQ(left, 0);
}

TEST_F(ClientWindowsTest, LetAListenerLeaveWhileItIsCalled) {
    int calls = 0;
    std::unique_ptr<platform::Subscription> watch;
    watch = clientWindows_.watch([&] {
        ++calls;
        watch.reset();
    });
    const auto first = open("First");
    EXPECT_TRUE(runLoop_.runUntil([&] { return calls == 1; }));
    EXPECT_EQ(runLoop_.watched(), 0U);

    int later = 0;
    watch = clientWindows_.watch([&] { ++later; });
    const auto second = open("Second");
    EXPECT_TRUE(runLoop_.runUntil([&] { return later > 0; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(ClientWindowsTest, LetAListenerTakeAnotherOneAway) {
    int calls = 0;
    std::unique_ptr<platform::Subscription> first;
    std::unique_ptr<platform::Subscription> second;
    const auto takeBothAway = [&] {
        ++calls;
        first.reset();
        second.reset();
    };
    first = clientWindows_.watch(takeBothAway);
    second = clientWindows_.watch(takeBothAway);
    const auto application = open("New");
    EXPECT_TRUE(runLoop_.runUntil([&] { return calls > 0 && runLoop_.watched() == 0; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(ClientWindowsTest, OccupyTheMainLoopOnlyWhileSomebodyListens) {
    EXPECT_EQ(runLoop_.watched(), 0U);
    {
        const auto watch = clientWindows_.watch([] {});
        EXPECT_GT(runLoop_.watched(), 0U);
        const auto another = clientWindows_.watch([] {});
    }
    EXPECT_EQ(runLoop_.watched(), 0U);
}

TEST_F(ClientWindowsTest, SendNothingWhileNobodyListens) {
    clientWindows_.watch([] {}).reset();
    const auto application = open("New");
    const x11::Reply<xcb_get_input_focus_reply_t> fence(xcb_get_input_focus_reply(
        connection_->get(), xcb_get_input_focus(connection_->get()), nullptr));
    EXPECT_EQ(xcb_poll_for_event(connection_->get()), nullptr);
}

TEST_F(ClientWindowsTest, AreNoneAndDoNotBusyTheLoopOnceTheServerIsGone) {
    const auto watch = clientWindows_.watch([] {});
    const auto before = runLoop_.watched();
    desktop_.virtualDisplay().server().signal(SIGKILL);
    EXPECT_TRUE(runLoop_.runUntil([&] { return runLoop_.watched() < before; }));
    EXPECT_THAT(owners(), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
