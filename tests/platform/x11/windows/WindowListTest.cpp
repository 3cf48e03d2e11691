#include "platform/x11/windows/WindowsTest.h"

#include <map>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

class WindowListTest : public WindowsTest {
protected:
    std::map<std::string, std::int32_t> layers() {
        std::map<std::string, std::int32_t> result;
        const auto infos = windows_.copyWindowInfo().value();
        for (const auto& info : infos) {
            result[info.ownerName.value()] = info.layer.value();
        }
        return result;
    }
};

TEST_F(WindowListTest, IsEmptyWithoutWindows) {
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(WindowListTest, GoesFromFrontToBack) {
    const auto first = openActive("First");
    const auto second = openActive("Second");
    const auto third = openActive("Third");
    EXPECT_TRUE(namesBecome({"Third", "Second", "First"}));

    observer_.activate(first.window(), XCB_CURRENT_TIME);
    EXPECT_TRUE(namesBecome({"First", "Third", "Second"}));
}

TEST_F(WindowListTest, TellsOwnerProcessAndLayer) {
    const auto application = openActive("Editor");
    const auto infos = windows_.copyWindowInfo().value();
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(infos[0].ownerName, "Editor");
    EXPECT_EQ(infos[0].ownerProcess, application.pid());
    EXPECT_EQ(infos[0].layer, 0);
}

TEST_F(WindowListTest, PutsWindowsThatPeopleWorkInOnLayerZero) {
    std::vector<Application> applications;
    for (const std::string type : {"normal", "dialog", "utility", "toolbar"}) {
        applications.push_back(open(type, {"--type", type}));
    }
    applications.push_back(open("untyped"));
    applications.push_back(open("unknown", {"--type", "something_new"}));
    EXPECT_THAT(layers(), ElementsAre(std::pair{"dialog", 0}, std::pair{"normal", 0},
                                      std::pair{"toolbar", 0}, std::pair{"unknown", 0},
                                      std::pair{"untyped", 0}, std::pair{"utility", 0}));
}

TEST_F(WindowListTest, PutsWhatSurroundsThemOnOtherLayers) {
    std::vector<Application> applications;
    for (const std::string type : {"dock", "desktop", "notification", "splash", "menu",
                                   "dropdown_menu", "popup_menu", "tooltip", "combo", "dnd"}) {
        applications.push_back(open(type, {"--type", type}));
    }
    EXPECT_EQ(layers().size(), 10U);
    const auto all = layers();
    for (const auto& [type, layer] : all) {
        EXPECT_NE(layer, 0) << type;
    }
}

TEST_F(WindowListTest, LeavesOutMinimisedWindows) {
    const auto kept = openActive("Kept");
    const auto minimised = openActive("Minimised");
    observer_.minimise(minimised.window());
    EXPECT_TRUE(namesBecome({"Kept"}));
}

TEST_F(WindowListTest, LeavesOutOtherWorkspacesAndKeepsWindowsOfAllWorkspaces) {
    const auto sticky = openActive("Sticky");
    const auto away = openActive("Away");
    observer_.moveToDesktop(away.window(), 1);
    observer_.moveToDesktop(sticky.window(), allDesktops);
    EXPECT_TRUE(namesBecome({"Sticky"}));

    observer_.switchToDesktop(1);
    EXPECT_TRUE(waitUntil([&] { return observer_.currentDesktop() == 1; }));
    EXPECT_THAT(names(), testing::UnorderedElementsAre("Away", "Sticky"));
}

TEST_F(WindowListTest, BelievesTheServerRatherThanTheWindowAboutTheProcess) {
    const auto liar = openActive("Liar", {"--pid", "1"});
    const auto silent = openActive("Silent", {"--no-pid"});
    const auto elsewhere = openActive("Elsewhere", {"--machine", "elsewhere.example"});
    const auto infos = windows_.copyWindowInfo().value();
    ASSERT_EQ(infos.size(), 3U);
    EXPECT_EQ(infos[0].ownerProcess, elsewhere.pid());
    EXPECT_EQ(infos[1].ownerProcess, silent.pid());
    EXPECT_EQ(infos[2].ownerProcess, liar.pid());
}

TEST_F(WindowListTest, HandsAllFactsOfTheWindowToTheOwners) {
    const auto application =
        openActive("Editor", {"--gtk-id", "org.example.Editor", "--desktop-file", "editor"});
    EXPECT_TRUE(namesBecome({"Editor"}));
    ASSERT_FALSE(owners_.asked.empty());
    EXPECT_EQ(owners_.asked.back(), (platform::WindowFacts{.process = application.pid(),
                                                           .instanceName = "probe",
                                                           .className = "Editor",
                                                           .gtkApplicationId = "org.example.Editor",
                                                           .desktopFile = "editor",
                                                           .sandboxApplicationId = {}}));
}

TEST_F(WindowListTest, NamesNobodyWhereTheOwnerHasNoName) {
    const auto application = openActive("");
    EXPECT_EQ(windows_.copyWindowInfo().value().at(0).ownerName, std::nullopt);
}

TEST_F(WindowListTest, AsksForTheOwnerOfAWindowOnce) {
    const auto application = openActive("Editor");
    EXPECT_TRUE(namesBecome({"Editor"}));
    pressKey();
    EXPECT_THAT(names(), ElementsAre("Editor"));
    EXPECT_EQ(owners_.asked.size(), 1U);
}

TEST_F(WindowListTest, AsksAnewWhenTheOwnersChangeTheirMind) {
    const auto application = openActive("Editor");
    EXPECT_TRUE(namesBecome({"Editor"}));
    owners_.suffix = " 2";
    EXPECT_THAT(names(), ElementsAre("Editor"));
    ++owners_.currentGeneration;
    EXPECT_THAT(names(), ElementsAre("Editor 2"));
}

TEST_F(WindowListTest, NoticesThatAWindowChangesItsClass) {
    const auto application = openActive("Start");
    EXPECT_TRUE(namesBecome({"Start"}));
    observer_.setText(application.window(), "WM_CLASS", std::string("writer\0Writer\0", 14));
    EXPECT_THAT(names(), ElementsAre("Writer"));
}

TEST_F(WindowListTest, DoesNotTakeAReusedWindowNumberForTheOldWindow) {
    xcb_window_t number = XCB_NONE;
    {
        const auto before = openActive("Same", {"--gtk-id", "before"});
        number = before.window();
        EXPECT_TRUE(namesBecome({"Same"}));
    }
    EXPECT_TRUE(waitUntil([&] { return observer_.stacking().empty(); }));
    const auto after = openActive("Same", {"--gtk-id", "after", "--type", "dialog"});
    ASSERT_EQ(after.window(), number);

    endTurn();
    const auto infos = windows_.copyWindowInfo().value();
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(infos[0].ownerProcess, after.pid());
    EXPECT_EQ(owners_.asked.back().gtkApplicationId, "after");
}

TEST_F(WindowListTest, LetsNoEventsPileUp) {
    const auto application = openActive("Editor");
    for (int change = 0; change < 3; ++change) {
        const auto* layout = change % 2 == 0 ? "fr" : "us";
        EXPECT_EQ(desktop_.start({"setxkbmap", layout})->wait(), 0);
        names();
    }
    observer_.sync();
    const x11::Reply<xcb_generic_event_t> unasked(xcb_poll_for_event(observer_.get()));
    EXPECT_TRUE(unasked) << "no client was told of the changes";
    EXPECT_EQ(xcb_poll_for_event(connection().get()), nullptr);
}

TEST_F(WindowListTest, IsAbsentOnceTheServerIsGone) {
    const auto application = openActive("Editor");
    desktop_.virtualDisplay().server().signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !windows_.copyWindowInfo().has_value(); }));
    EXPECT_FALSE(windows_.bringToFront(application.pid()));
}

} // namespace

} // namespace hollowfernpike::test
