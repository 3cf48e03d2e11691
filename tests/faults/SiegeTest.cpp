#include "desktop/FrontWatch.h"
#include "desktop/Story.h"
#include "desktop/windows/WindowTitles.h"
#include "faults/Footprint.h"
#include "platform/freedesktop/files/Descriptor.h"
#include "platform/x11/server/Atoms.h"
#include "support/Files.h"
#include "support/SocketAddress.h"
#include "support/WaitUntil.h"
#include "support/XClient.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

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
        layIcons();
        story.bind(toOne, one);
        story.bind(toOther, other);
        story.bind(toGone, {.path = "/nowhere/gone.desktop", .name = "Gone", .identifier = "gone"});
        Combination next{4, control | option};
        for (const auto& icon : icons) {
            story.bind(next, {.path = entryWith(icon), .name = icon.filename(), .identifier = ""});
            ++next.keyCode;
        }
        story.writeShortcuts();
        story.launchUtility();
    }

    // --- what lies around

    void layIcons() {
        const auto folder = story.desktop.home() / "icons";
        fs::create_directories(folder);
        const auto add = [&](const std::string& name, const std::string& text) {
            icons.push_back(folder / name);
            putFile(icons.back(), text);
        };
        const std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" )"
                                R"(xmlns:xlink="http://www.w3.org/1999/xlink" )";
        icons.push_back(folder / "pipe.png");
        EXPECT_EQ(::mkfifo(icons.back().c_str(), 0600), 0);
        add("reference.svg", svg + "><image xlink:href=\"" + icons.front().string() + "\"/></svg>");
        std::string bomb = svg + R"(><g id="a0"><rect width="1" height="1"/></g>)";
        for (int level = 1; level <= 30; ++level) {
            const auto use = "<use xlink:href=\"#a" + std::to_string(level - 1) + "\"/>";
            bomb.append("<g id=\"a").append(std::to_string(level)).append("\">");
            bomb.append(use).append(use).append("</g>");
        }
        add("bomb.svg", bomb + "</svg>");
        add("huge.xpm", "/* XPM */\nstatic char *x[] = {\n\"30000 30000 1 1\",\n\"a c red\",\n");
        add("large.svg", svg + "/>");
        fs::resize_file(icons.back(), std::uintmax_t{1} << 40);
        add("noise.png", "\x89PNG\r\n\x1a\n" + std::string(4000, '\x7f'));
    }

    std::string entryWith(const fs::path& icon) {
        const auto entry = story.desktop.applications() / (icon.filename().string() + ".desktop");
        const std::string backwards{'\xE2', '\x80', '\xAE'}; // U+202E
        putFile(entry, "[Desktop Entry]\nType=Application\nName=" + backwards + "gpj." +
                           icon.filename().string() + "\nExec=true\nIcon=" + icon.string() + "\n");
        return entry.string();
    }

    // --- attacks, one round of each

    void foldersLinkToEachOther() {
        const auto folder = story.desktop.applications() / "maze";
        fs::remove_all(folder);
        for (int number = 0; number < 12; ++number) {
            fs::create_directories(folder / std::to_string(number));
            for (int target = 0; target < 12; ++target) {
                fs::create_directory_symlink(folder / std::to_string(target),
                                             folder / std::to_string(number) /
                                                 std::to_string(target));
            }
        }
    }

    void entriesComeAndGo() {
        for (int number = 0; number < 20; ++number) {
            const auto entry =
                story.desktop.applications() / ("some" + std::to_string(number) + ".desktop");
            putFile(entry, number % 2 == 0 ? std::string(100'000, '[')
                                           : "[Desktop Entry]\nType=Application\nName=x\nExec=" +
                                                 std::string(50'000, '"'));
            fs::remove(entry);
        }
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

    void requestsAreNoise() {
        const auto address = socketAddress(story.desktop.home() / "run/hollowfernpike.socket");
        std::vector<freedesktop::Descriptor> sockets;
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
        rival.grab(story.grabOf({9, control | option}));
        if (rival.grabKeyboard() && rival.grabPointer()) {
            story.strike(toOne);
        }
        rival.giveInputBack();
        rival.changeKeySymbols(5);
        rival.announceWindowManager();
    }

    void debuggersStopIt() {
        story.utility().signal(SIGSTOP);
        EXPECT_TRUE(waitUntil([this] { return processState(story.utility().pid()) == "T"; }));
        story.utility().signal(SIGCONT);
    }

    void applicationsAreGone() { story.strike(toGone); }

    /// Opens the window with the cards, which show the icons, and closes it.
    void windowsOpenAndClose() {
        story.run({HFP_PROGRAM});
        EXPECT_TRUE(waitUntil([this] { return management() != XCB_NONE; }));
        story.pager.close(management());
        EXPECT_TRUE(waitUntil([this] { return management() == XCB_NONE; }));
    }

    void attack() {
        foldersLinkToEachOther();
        entriesComeAndGo();
        windowsLie();
        requestsAreNoise();
        callsAreNoise();
        rivalsTakeKeysAndInput();
        debuggersStopIt();
        applicationsAreGone();
        windowsOpenAndClose();
    }

    // --- what must hold

    xcb_window_t management() {
        for (const auto window : story.pager.stacking()) {
            if (story.pager.titleOf(window) == japaneseTitles.management) {
                return window;
            }
        }
        return XCB_NONE;
    }

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
        for (int number = 0; number < count; ++number) {
            const bool isOdd = number % 2 != 0;
            if (const auto time = answer(isOdd ? toOne : toOther, isOdd ? one : other)) {
                times.push_back(*time);
            }
        }
        std::ranges::sort(times);
        return times;
    }

    /// The user's files that are none of the attacks.
    std::map<fs::path, std::string> files() const {
        std::map<fs::path, std::string> found;
        for (const auto& folder :
             {story.shortcutsFile().parent_path(), story.desktop.home() / ".config"}) {
            std::error_code missing;
            for (const auto& entry : fs::recursive_directory_iterator(folder, missing)) {
                if (entry.is_regular_file()) {
                    found[entry.path()] = contentsOf(entry.path());
                }
            }
        }
        return found;
    }

    Footprint footprint() { return footprintOf(story.utility().pid(), story.pager); }

    const Combination toOne{37, control | option};
    const Combination toOther{38, control | option};
    const Combination toGone{40, control | option};
    Story story;
    std::vector<fs::path> icons;
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
    const auto atStart = footprint();
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
            std::cout << "round " << rounds << ": " << footprint() << ", slowest answer " << worst
                      << " ms" << std::endl;
        }
    }
    ASSERT_TRUE(waitUntil([&] { return footprint().descriptors <= atStart.descriptors; }));
    const auto atEnd = footprint();
    const auto times = answers(presses);
    ASSERT_EQ(times.size(), presses);
    std::cout << rounds << " rounds: " << atEnd << "\nanswers afterwards: median "
              << times[presses / 2] << " ms, slowest " << times.back()
              << " ms; slowest between the rounds " << worst << " ms" << std::endl;
    EXPECT_LE(times[presses / 2], mostMilliseconds);
    EXPECT_LE(atEnd.memory, atStart.memory + mostGrowth);
    EXPECT_EQ(atEnd.descriptors, atStart.descriptors);
    EXPECT_EQ(atEnd.displayClients, atStart.displayClients);
    EXPECT_EQ(files(), before);
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

} // namespace
} // namespace hollowfernpike
