#include "platform/x11/windows/WindowsTest.h"

#include <array>
#include <limits>

#include <unistd.h>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view stackingList = "_NET_CLIENT_LIST_STACKING";

std::string thisMachine() {
    std::array<char, 256> name{};
    ::gethostname(name.data(), name.size() - 1);
    return name.data();
}

/// A display without a window manager, where the test writes every property itself.
class HostileWindowsTest : public WindowsTest {
protected:
    HostileWindowsTest() : WindowsTest("") {}

    xcb_window_t windowOf(const std::string& name) {
        const auto window = observer_.createWindow(observer_.root());
        observer_.setText(window, "WM_CLASS", std::string{"instance"} + '\0' + name + '\0');
        return window;
    }

    void setList(std::string_view property, const std::vector<std::uint32_t>& windows,
                 xcb_atom_t type = XCB_ATOM_WINDOW) {
        observer_.setNumbers(observer_.root(), property, type, windows);
    }
};

TEST_F(HostileWindowsTest, SkipsAWindowThatIsGone) {
    const auto kept = windowOf("Kept");
    const auto gone = windowOf("Gone");
    setList(stackingList, {kept, gone});
    EXPECT_THAT(names(), ElementsAre("Gone", "Kept"));
    observer_.destroyWindow(gone);
    EXPECT_THAT(names(), ElementsAre("Kept"));
}

TEST_F(HostileWindowsTest, SkipsNumbersThatAreNoWindowsOfClients) {
    const auto window = windowOf("Real");
    setList(stackingList, {observer_.root(), XCB_NONE, 1, 0x12345, 0xFFFFFFFF, window, window,
                           observer_.root(), window});
    EXPECT_THAT(names(), ElementsAre("Real"));
}

TEST_F(HostileWindowsTest, ReadsTheFrontOfAVeryLongList) {
    const auto window = windowOf("Real");
    std::vector<std::uint32_t> list(16'000);
    for (std::size_t index = 0; index < list.size(); ++index) {
        list[index] = static_cast<std::uint32_t>(0x10'0000 + index);
    }
    list.back() = window;
    setList(stackingList, list);
    EXPECT_THAT(names(), ElementsAre("Real"));
}

TEST_F(HostileWindowsTest, TakesAListOfAnotherTypeForNone) {
    const auto window = windowOf("Real");
    setList(stackingList, {window}, XCB_ATOM_CARDINAL);
    EXPECT_THAT(names(), IsEmpty());
    observer_.setText(observer_.root(), stackingList, "no windows at all");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HostileWindowsTest, IgnoresValuesOfTheWrongKind) {
    const auto window = windowOf("Real");
    setList(stackingList, {window});
    const auto hidden = observer_.atom("_NET_WM_STATE_HIDDEN");
    observer_.setNumbers(window, "_NET_WM_STATE", XCB_ATOM_CARDINAL, {hidden});
    observer_.setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_CARDINAL,
                         {observer_.atom("_NET_WM_WINDOW_TYPE_DOCK")});
    observer_.setText(window, "_NET_WM_DESKTOP", "seven");
    observer_.setText(observer_.root(), "_NET_CURRENT_DESKTOP", "");
    observer_.setText(window, "_NET_WM_PID", "1234");
    observer_.setNumbers(window, "_GTK_APPLICATION_ID", XCB_ATOM_ATOM, {1, 2, 3});
    const auto infos = windows_.copyWindowInfo().value();
    ASSERT_THAT(infos, SizeIs(1));
    EXPECT_EQ(infos[0].layer, 0);
    EXPECT_EQ(infos[0].ownerProcess, ::getpid());
    EXPECT_EQ(owners_.asked.back().gtkApplicationId, "");
}

TEST_F(HostileWindowsTest, TakesTheFirstTypeItKnows) {
    const auto window = windowOf("Panel");
    setList(stackingList, {window});
    observer_.setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                         {0xFFFFFFFF, observer_.atom("_NET_WM_WINDOW_TYPE_DOCK"),
                          observer_.atom("_NET_WM_WINDOW_TYPE_NORMAL")});
    EXPECT_NE(windows_.copyWindowInfo().value().at(0).layer, 0);
}

TEST_F(HostileWindowsTest, TakesAnyClassApartSafely) {
    const std::vector<std::pair<std::string, std::string>> classes{
        {"", ""},
        {"no end", ""},
        {std::string("only one\0", 9), ""},
        {std::string("\0\0\0\0", 4), ""},
        {std::string("one\0two", 7), "two"},
        {std::string("one\0two\0three\0", 14), "two"},
        {std::string("one\0\xFF\xFE\x80", 7), "\xFF\xFE\x80"},
    };
    const auto window = windowOf("");
    setList(stackingList, {window});
    for (const auto& [value, expected] : classes) {
        observer_.setText(window, "WM_CLASS", value);
        names();
        EXPECT_EQ(owners_.asked.back().className, expected) << testing::PrintToString(value);
    }
}

TEST_F(HostileWindowsTest, BoundsTheLengthOfTexts) {
    const auto window = windowOf("");
    setList(stackingList, {window});
    const std::string endless(200'000, 'x');
    observer_.setText(window, "WM_CLASS", std::string("i\0", 2) + endless);
    for (const auto* property :
         {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE", "_BAMF_DESKTOP_FILE"}) {
        observer_.setText(window, property, endless);
    }
    EXPECT_THAT(names(), SizeIs(1));
    const auto& facts = owners_.asked.back();
    for (const auto& text : {facts.className, facts.gtkApplicationId, facts.desktopFile}) {
        EXPECT_GT(text.size(), 0U);
        EXPECT_LE(text.size(), 1024U);
    }
}

TEST_F(HostileWindowsTest, PrefersTheDesktopFileOfTheWindowToThatOfItsLauncher) {
    const auto window = windowOf("Any");
    setList(stackingList, {window});
    observer_.setText(window, "_BAMF_DESKTOP_FILE", "/launcher.desktop");
    names();
    EXPECT_EQ(owners_.asked.back().desktopFile, "/launcher.desktop");

    const auto other = windowOf("Other");
    observer_.setText(other, "_BAMF_DESKTOP_FILE", "/launcher.desktop");
    observer_.setText(other, "_KDE_NET_WM_DESKTOP_FILE", "own");
    setList(stackingList, {other});
    names();
    EXPECT_EQ(owners_.asked.back().desktopFile, "own");
}

TEST_F(HostileWindowsTest, FallsBackToTheListByAge) {
    const auto older = windowOf("Older");
    const auto newer = windowOf("Newer");
    setList("_NET_CLIENT_LIST", {older, newer});
    EXPECT_THAT(names(), ElementsAre("Newer", "Older"));
}

TEST_F(HostileWindowsTest, FallsBackToTheWindowTree) {
    const auto bottom = windowOf("Bottom");
    windowOf("Unmanaged");
    const auto frame = observer_.createWindow(observer_.root());
    const auto framed = observer_.createWindow(frame);
    const auto iconic = windowOf("Iconic");
    observer_.setText(framed, "WM_CLASS", std::string("f\0Framed\0", 9));
    const auto state = observer_.atom("WM_STATE");
    observer_.setNumbers(bottom, "WM_STATE", state, {1, 0});
    observer_.setNumbers(framed, "WM_STATE", state, {1, 0});
    observer_.setNumbers(iconic, "WM_STATE", state, {3, 0});
    EXPECT_THAT(names(), ElementsAre("Framed", "Bottom"));
}

/// The server is one that does not know its clients' processes.
class StatedProcessTest : public testing::Test {
protected:
    StatedProcessTest()
        : server_({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-extension", "X-Resource"}),
          display_(':' + server_.waitForLine("").value()), observer_(display_),
          window_(observer_.createWindow(observer_.root())) {
        observer_.setNumbers(observer_.root(), stackingList, XCB_ATOM_WINDOW, {window_});
    }

    std::optional<std::int32_t> processIf(std::uint32_t pid, const std::string& machine) {
        observer_.setNumbers(window_, "_NET_WM_PID", XCB_ATOM_CARDINAL, {pid});
        observer_.setText(window_, "WM_CLIENT_MACHINE", machine);
        queue_.runDue();
        return windows_.copyWindowInfo().value().at(0).ownerProcess;
    }

    ChildProcess server_;
    std::string display_;
    DesktopObserver observer_;
    x11::UserTime userTime_;
    FakeWindowOwners owners_;
    FakeMainQueue queue_;
    PolledRunLoop runLoop_;
    x11::Windows windows_{{queue_, runLoop_, owners_, {}, {}}, userTime_, display_};
    xcb_window_t window_;
};

TEST_F(StatedProcessTest, IsBelievedForLackOfABetterSource) {
    EXPECT_EQ(processIf(4321, thisMachine()), 4321);
}

TEST_F(StatedProcessTest, IsOfNoUseFromAnotherMachine) {
    EXPECT_EQ(processIf(4321, "elsewhere.example"), std::nullopt);
    EXPECT_EQ(processIf(4321, ""), std::nullopt);
}

TEST_F(StatedProcessTest, IsNeverZeroOrNegative) {
    EXPECT_EQ(processIf(0, thisMachine()), std::nullopt);
    EXPECT_EQ(processIf(0x8000'0001, thisMachine()), std::nullopt);
    EXPECT_EQ(processIf(0xFFFF'FFFF, thisMachine()), std::nullopt);
    EXPECT_EQ(processIf(0x7FFF'FFFF, thisMachine()), 0x7FFF'FFFF);
}

} // namespace

} // namespace hollowfernpike::test
