#include "platform/x11/windows/WindowsTest.h"

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
        for (const auto& window : windows_.clientWindows()) {
            result.push_back(window.owner.name);
        }
        return result;
    }

    /// Turns the main loop until the condition holds.
    template <class Condition>
    bool runUntil(Condition condition) {
        return runLoop_.runUntil([&] {
            endTurn();
            return condition();
        });
    }
};

TEST_F(ClientWindowsTest, AreListedOldestFirst) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    const auto third = openActive("Third");
    observer_.activate(first.window(), XCB_CURRENT_TIME);
    ASSERT_TRUE(becomesActive(first.window()));
    EXPECT_TRUE(waitUntil([&] { return names().front() == "First"; }));

    EXPECT_THAT(owners(), ElementsAre("First", "Second", "Third"));
    EXPECT_EQ(windows_.clientWindows().at(1).process, second.pid());
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

TEST_F(ClientWindowsTest, AskOnceInATurnOfTheMainLoop) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    observer_.activate(first.window(), XCB_CURRENT_TIME);
    ASSERT_TRUE(becomesActive(first.window()));
    pressKey();
    ASSERT_TRUE(namesBecome({"First", "Second"}));
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(requestsDuring(connection(), [&] { EXPECT_THAT(owners(), SizeIs(2)); }), 0U);
    }
    endTurn();
    EXPECT_GT(requestsDuring(connection(), [&] { EXPECT_THAT(owners(), SizeIs(2)); }), 0U);
    EXPECT_EQ(requestsDuring(connection(), [&] { windows_.copyWindowInfo(); }), 0U);
}

TEST_F(ClientWindowsTest, AskAgainOnceAWatchBegins) {
    EXPECT_THAT(owners(), IsEmpty());
    const auto first = open("First");
    EXPECT_THAT(owners(), IsEmpty()) << "of the same turn";
    const auto watch = windows_.watch([] {});
    EXPECT_THAT(owners(), ElementsAre("First")) << "or nobody would hear of it";
}

TEST_F(ClientWindowsTest, AskAgainWhenAChangeIsTold) {
    const auto watch = windows_.watch([] {});
    const auto first = open("First");
    endTurn();
    EXPECT_THAT(owners(), ElementsAre("First"));
    std::vector<std::string> told;
    const auto reader = windows_.watch([&] {
        owners();
        told = owners();
    });
    const auto second = open("Second");
    ASSERT_TRUE(runUntil([&] { return told.size() == 2; }));
    EXPECT_THAT(told, ElementsAre("First", "Second"));
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
    const auto watch = windows_.watch([&] { ++changes; });
    {
        const auto application = desktop_.start({HFP_PROBE_WINDOW, "--class", "p,New"});
        EXPECT_TRUE(
            runUntil([&] { return changes > 0 && owners() == std::vector<std::string>{"New"}; }));
        changes = 0;
    }
    EXPECT_TRUE(runUntil([&] { return changes > 0 && owners().empty(); }));
}

TEST_F(ClientWindowsTest, TellOfAChangeThatWasReadOffByAnotherQuestion) {
    int changes = 0;
    const auto watch = windows_.watch([&] { ++changes; });
    const auto application = open("New");
    EXPECT_TRUE(namesBecome({"New"}));
    EXPECT_EQ(changes, 0) << "told from within a question";
    EXPECT_TRUE(runUntil([&] { return changes > 0; }));
}

TEST_F(ClientWindowsTest, TellNobodyWhoHasLeft) {
    int left = 0;
    int stayed = 0;
    auto leaving = windows_.watch([&] { ++left; });
    const auto staying = windows_.watch([&] { ++stayed; });
    leaving.reset();
    const auto application = open("New");
    EXPECT_TRUE(runUntil([&] { return stayed > 0; }));
    EXPECT_EQ(left, 0);
}

TEST_F(ClientWindowsTest, LetAListenerLeaveWhileItIsCalled) {
    int calls = 0;
    std::unique_ptr<platform::Subscription> watch;
    watch = windows_.watch([&] {
        ++calls;
        watch.reset();
    });
    const auto first = open("First");
    EXPECT_TRUE(runUntil([&] { return calls == 1; }));
    EXPECT_EQ(runLoop_.watched(), 0U);

    int later = 0;
    watch = windows_.watch([&] { ++later; });
    const auto second = open("Second");
    EXPECT_TRUE(runUntil([&] { return later > 0; }));
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
    first = windows_.watch(takeBothAway);
    second = windows_.watch(takeBothAway);
    const auto application = open("New");
    EXPECT_TRUE(runUntil([&] { return calls > 0 && runLoop_.watched() == 0; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(ClientWindowsTest, OccupyTheMainLoopOnlyWhileSomebodyListens) {
    EXPECT_EQ(runLoop_.watched(), 0U);
    {
        const auto watch = windows_.watch([] {});
        EXPECT_GT(runLoop_.watched(), 0U);
        const auto another = windows_.watch([] {});
    }
    EXPECT_EQ(runLoop_.watched(), 0U);
}

TEST_F(ClientWindowsTest, SendNothingWhileNobodyListens) {
    windows_.watch([] {}).reset();
    const auto application = open("New");
    const x11::Reply<xcb_get_input_focus_reply_t> fence(xcb_get_input_focus_reply(
        connection().get(), xcb_get_input_focus(connection().get()), nullptr));
    EXPECT_EQ(xcb_poll_for_event(connection().get()), nullptr);
}

TEST_F(ClientWindowsTest, AreNoneAndDoNotBusyTheLoopOnceTheServerIsGone) {
    const auto watch = windows_.watch([] {});
    const auto before = runLoop_.watched();
    desktop_.virtualDisplay().server().signal(SIGKILL);
    EXPECT_TRUE(runUntil([&] { return runLoop_.watched() < before; }));
    EXPECT_THAT(owners(), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
