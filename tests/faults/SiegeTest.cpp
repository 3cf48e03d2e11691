#include "desktop/FrontWatch.h"
#include "desktop/Story.h"
#include "desktop/windows/WindowUser.h"
#include "faults/Footprint.h"
#include "faults/HostileHome.h"
#include "platform/posix/Descriptor.h"
#include "platform/x11/server/Atoms.h"
#include "platform/x11/tray/Tray.h"
#include "support/ContextSwitches.h"
#include "support/Files.h"
#include "support/SilentSocket.h"
#include "support/SmallDisk.h"
#include "support/SocketAddress.h"
#include "support/WaitUntil.h"
#include "support/XClient.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace hollowfernpike {
namespace {

using namespace test;
namespace fs = std::filesystem;
using Clock = FrontWatch::Clock;

/// As long as HFP_SIEGE_SECONDS says, otherwise as long as a test run has time for.
std::chrono::seconds length() {
    const char* const setting = std::getenv("HFP_SIEGE_SECONDS");
    return std::chrono::seconds{setting == nullptr ? 15 : std::stol(setting)};
}

/// Everything that may lie around on a machine, at once, around the program in use.
class SiegeTest : public testing::Test {
protected:
    SiegeTest() {
        story.turnRepetitionOff();
        Combination next{0, control | option};
        for (const auto& entry : home.entries()) { // their cards come first, so they are seen
            story.bind(next, {.path = entry, .name = entry.stem(), .identifier = ""});
            ++next.keyCode;
        }
        story.bind(toOne, one);
        story.bind(toOther, other);
        story.bind(toGone, {.path = "/nowhere/gone.desktop", .name = "Gone", .identifier = "gone"});
        story.bind(toForeign, {.path = home.foreignEntry(), .name = "Foreign", .identifier = ""});
        story.writeShortcuts();
        story.launchUtility({{"SESSION_MANAGER", "unix/:" + silent.string()}});
        nobodyReadsItsOutput();
    }

    void TearDown() override {
        auto& server = story.desktop.virtualDisplay().server();
        for (auto* const process : {&story.utility(), &server}) {
            if (HasFailure() && process->hasEnded() && process->wait() != 0) {
                ADD_FAILURE() << (process == &server ? "the display" : "the program")
                              << " has ended with " << *process->wait() << ": "
                              << process->errors();
            }
        }
    }

    // --- attacks

    void nobodyReadsItsOutput() {
        const auto path = "/proc/" + std::to_string(story.utility().pid()) + "/fd/1";
        const posix::Descriptor output{::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)};
        EXPECT_GE(::fcntl(output.get(), F_SETPIPE_SZ, 4096), 4096);
        while (::write(output.get(), "\n", 1) == 1) {
        }
    }

    /// Another start in the midst of it has to find the first.
    void theBusStaysSilent() {
        story.desktop.bus().daemon().signal(SIGSTOP);
        windowsOpenAndClose();
        EXPECT_EQ(answers(2).size(), 2U);
        story.desktop.bus().daemon().signal(SIGCONT);
    }

    void theBusEndsAndComesBack() {
        story.desktop.bus().end();
        EXPECT_EQ(answers(2).size(), 2U);
        story.desktop.bus().startAgain();
        EXPECT_TRUE(waitUntil([this] { return answersOnTheBus(); }));
    }

    bool answersOnTheBus() {
        try {
            callOnBus(story.desktop,
                      {"app.hollowfernpike.Hollowfernpike", "/", "org.freedesktop.DBus.Peer.Ping"});
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    }

    void aTrayComesLiesAndGoes() {
        constexpr std::uint32_t pixels = 30'000;
        Tray tray(story.desktop.display());
        tray.announce();
        std::vector<std::uint32_t> request;
        ASSERT_TRUE(waitUntil([&] { return !(request = tray.request()).empty(); }));
        tray.takeIn(request.back(), pixels, pixels);
        EXPECT_EQ(answers(2).size(), 2U);
    }

    /// Saves a shortcut as it is, while there is no room for it and when there is.
    void theDiskIsFull() {
        const auto filling = disk.folder() / "filling";
        putFile(filling, std::string(diskSize, 'x'));
        user.openManagement();
        user.clickSave(user.clickEdit(0));
        user.strikeAndLeave(user.comes(user.titles.alert), "RTRN");
        fs::remove(filling);
        const auto window = user.openManagement();
        user.clickSave(user.clickEdit(0));
        story.pager.close(window);
        user.goes(window);
    }

    void descriptorsAreUsedUp() {
        const auto process = story.utility().pid();
        rlimit limit{};
        ASSERT_EQ(::prlimit(process, RLIMIT_NOFILE, nullptr, &limit), 0);
        const rlimit noMore{lowestFreeDescriptor(process), limit.rlim_max};
        ASSERT_EQ(::prlimit(process, RLIMIT_NOFILE, &noMore, nullptr), 0);
        const auto takers = requestsAreNoise();
        EXPECT_EQ(answers(2).size(), 2U);
        ASSERT_EQ(::prlimit(process, RLIMIT_NOFILE, &limit, nullptr), 0);
    }

    static rlim_t lowestFreeDescriptor(pid_t process) {
        const auto used = namesIn("/proc/" + std::to_string(process) + "/fd");
        rlim_t lowest = 0;
        while (std::ranges::find(used, std::to_string(lowest)) != used.end()) {
            ++lowest;
        }
        return lowest;
    }

    void windowsLie() {
        XClient liar(story.desktop.display());
        for (int number = 0; number < 20; ++number) {
            const auto window = xcb_generate_id(liar.server());
            xcb_create_window(liar.server(), XCB_COPY_FROM_PARENT, window, liar.connection().root(),
                              0, 0, 10, 10, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                              0, nullptr);
            const std::string text = std::string(20'000, 'x') + '\0' + "One" + '\0';
            for (const char* property : {"WM_CLASS", "_GTK_APPLICATION_ID", "_BAMF_DESKTOP_FILE",
                                         "_NET_WM_PID", "_NET_WM_WINDOW_TYPE", "_NET_STARTUP_ID"}) {
                xcb_change_property(liar.server(), XCB_PROP_MODE_REPLACE, window,
                                    x11::internAtom(liar.server(), property), XCB_ATOM_STRING, 8,
                                    static_cast<std::uint32_t>(text.size()), text.data());
            }
            xcb_map_window(liar.server(), window);
        }
        liar.sync();
    }

    /// The clients of the program that ask for nonsense, or for nothing.
    std::vector<posix::Descriptor> requestsAreNoise() {
        const auto address = socketAddress(story.desktop.home() / "run/hollowfernpike.socket");
        std::vector<posix::Descriptor> sockets;
        for (int number = 0; number < 40; ++number) {
            sockets.emplace_back(
                ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
            if (::connect(sockets.back().get(), reinterpret_cast<const sockaddr*>(&address),
                          sizeof address) != 0) {
                continue; // too many are waiting already
            }
            const std::string noise(static_cast<std::size_t>(number) * 97, 'x');
            if (number % 2 == 0) {
                ::send(sockets.back().get(), noise.data(), noise.size(), MSG_NOSIGNAL);
            }
        }
        return sockets;
    }

    void callsAreNoise() {
        std::vector<std::unique_ptr<ChildProcess>> callers;
        for (const char* method : {"Activate", "Open", "ActivateAction", "Nothing"}) {
            callers.push_back(story.desktop.start(
                {"gdbus", "call", "--session", "--timeout", "1", "--dest",
                 "app.hollowfernpike.Hollowfernpike", "--object-path",
                 "/app/hollowfernpike/Hollowfernpike", "--method",
                 std::string("org.freedesktop.Application.") + method, std::string(1000, '1')}));
        }
        for (const auto& caller : callers) {
            caller->wait();
        }
    }

    void rivalsTakeKeysAndInput() {
        XClient rival(story.desktop.display());
        rival.grab(story.grabOf({3, control | option}));
        if (rival.grabKeyboard() && rival.grabPointer()) {
            story.strike(toOne);
        }
        rival.giveInputBack();
        rival.changeKeySymbols(5);
        rival.announceWindowManager();
    }

    void debuggersStopItInMidPress() {
        story.utility().signal(SIGSTOP);
        EXPECT_TRUE(waitUntil([this] { return processState(story.utility().pid()) == "T"; }));
        story.strike(toOne);
        story.utility().signal(SIGCONT);
        EXPECT_TRUE(story.isInFront(one));
    }

    void applicationsAreGoneOrForeign() {
        story.strike(toGone);
        story.strike(toForeign);
    }

    /// Opens the window with the cards, which show the icons, and closes it.
    void windowsOpenAndClose() {
        const auto window = user.openManagement();
        story.pager.close(window);
        user.goes(window);
    }

    void attack() {
        nobodyReadsItsOutput();
        home.layMaze();
        home.layIcons();
        home.changeEntries();
        windowsLie();
        requestsAreNoise();
        callsAreNoise();
        rivalsTakeKeysAndInput();
        applicationsAreGoneOrForeign();
        descriptorsAreUsedUp();
        aTrayComesLiesAndGoes();
        debuggersStopItInMidPress();
        theBusStaysSilent();
        theBusEndsAndComesBack();
        theDiskIsFull();
    }

    // --- what must hold

    /// From the press to the window in front, in milliseconds; absent if it does not come.
    std::optional<double> answer(const Combination& combination, const Application& target) {
        const auto wanted = target.windows();
        front.forget();
        const auto begin = Clock::now();
        story.strike(combination);
        const auto arrival = front.wait(
            [&](xcb_window_t window) { return std::ranges::find(wanted, window) != wanted.end(); });
        return arrival
                   ? std::optional(
                         std::chrono::duration<double, std::milli>(arrival->time - begin).count())
                   : std::nullopt;
    }

    /// The times of some answers, the shortest first; fewer if some did not come.
    std::vector<double> answers(int count) {
        std::vector<double> times;
        story.strike(toOne);
        EXPECT_TRUE(story.isInFront(one));
        for (int number = 0; number < count; ++number) {
            const bool isOdd = number % 2 != 0;
            if (const auto time = answer(isOdd ? toOne : toOther, isOdd ? one : other)) {
                times.push_back(*time);
            }
        }
        std::ranges::sort(times);
        return times;
    }

    /// The user's files but for those that are too large to read and those that others write to.
    std::map<fs::path, std::string> files() const {
        std::map<fs::path, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(story.desktop.home())) {
            if (entry.is_regular_file() && entry.file_size() < largestFile &&
                entry.path().extension() != ".log") {
                found[entry.path()] = contentsOf(entry.path());
            }
        }
        return found;
    }

    /// The names of the files that are there, or hold something else, in only one of the two.
    static std::vector<std::string> differences(const std::map<fs::path, std::string>& first,
                                                const std::map<fs::path, std::string>& second) {
        std::vector<std::map<fs::path, std::string>::value_type> files;
        std::ranges::set_symmetric_difference(first, second, std::back_inserter(files));
        std::vector<std::string> names;
        std::ranges::transform(files, std::back_inserter(names),
                               [](const auto& file) { return file.first.string(); });
        return names;
    }

    Footprint footprint() { return footprintOf(story.utility().pid(), story.pager); }

    /// Once it has slept for a while: icons, for instance, are read after their window has gone.
    Footprint footprintAtRest() {
        std::uint64_t times = 0;
        Clock::time_point since;
        const auto rests = [&] {
            const auto now = timesGoneToSleep(story.utility().pid());
            const bool sleeps = std::exchange(times, now) == now && allThreadsSleep();
            since = sleeps ? since : Clock::now();
            return Clock::now() - since > 300ms;
        };
        EXPECT_TRUE(waitUntil(rests));
        return footprint();
    }

    /// One that would run, but waits for a processor, does not.
    bool allThreadsSleep() {
        const auto tasks = namesIn("/proc/" + std::to_string(story.utility().pid()) + "/task");
        return std::ranges::all_of(
            tasks, [](const auto& task) { return processState(std::stoi(task)) == "S"; });
    }

    static constexpr std::size_t diskSize = 64U << 10;
    static constexpr std::uintmax_t largestFile = 8U << 20;

    const Combination toOne{37, control | option};
    const Combination toOther{38, control | option};
    const Combination toGone{40, control | option};
    const Combination toForeign{41, control | option};
    Story story;
    const HostileHome home{story.desktop.home(), story.desktop.applications()};
    const SmallDisk disk{story.shortcutsFile().parent_path(), diskSize};
    const fs::path silent = story.desktop.home() / "silent";
    const SilentSocket sessionManager{silent};
    WindowUser user{story};
    Application& other = story.open("Other");
    Application& one = story.open("One");
    FrontWatch front{story.desktop.display()};
};

TEST_F(SiegeTest, AllAttacksTogetherLeaveItAsItWas) {
    constexpr std::size_t mostGrowth = 10U << 20;
    constexpr double mostMilliseconds = 50;
    constexpr int presses = 21;
    ASSERT_TRUE(story.areLive()) << story.utilityTells();
    ASSERT_EQ(answers(2).size(), 2U) << story.utilityTells();
    attack(); // reads what a first window needs
    const auto before = files();
    const auto atStart = footprintAtRest();
    std::cout << "start: " << atStart << std::endl;
    const auto end = Clock::now() + length();
    int rounds = 0;
    double worst = 0;
    for (; Clock::now() < end && !HasFailure(); ++rounds) {
        attack();
        const auto times = answers(4);
        ASSERT_EQ(times.size(), 4U) << "a press is not answered after round " << rounds;
        worst = std::max(worst, times.back());
        if (rounds % 50 == 0) {
            std::cout << "round " << rounds << ": " << footprintAtRest() << ", slowest answer "
                      << worst << " ms" << std::endl;
        }
    }
    const auto atEnd = footprintAtRest();
    const auto times = answers(presses);
    ASSERT_EQ(times.size(), presses);
    std::cout << rounds << " rounds: " << atEnd << "\nanswers afterwards: median "
              << times[presses / 2] << " ms, slowest " << times.back()
              << " ms; slowest between the rounds " << worst << " ms" << std::endl;
    EXPECT_LE(times[presses / 2], mostMilliseconds);
    EXPECT_LE(atEnd.memory, atStart.memory + mostGrowth);
    EXPECT_LE(atEnd.descriptors, atStart.descriptors);
    EXPECT_EQ(atEnd.displayClients, atStart.displayClients);
    EXPECT_THAT(differences(files(), before), testing::IsEmpty());
    EXPECT_FALSE(home.isForeignEntryStarted());
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

} // namespace
} // namespace hollowfernpike
