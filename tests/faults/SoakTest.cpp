#include "desktop/ActivationRequests.h"
#include "desktop/FrontWatch.h"
#include "desktop/Story.h"
#include "faults/Footprint.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::size_t warmUp = 500;
constexpr std::size_t batch = 100;
constexpr std::size_t parts = 4;

/// How many more bytes of its own the utility may hold after this many presses of each kind: some
/// pages that are touched late, and for each press less than any leak would take.
std::size_t slackAfter(std::size_t presses) {
    constexpr std::size_t latePages = 12;
    return latePages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + presses / 8;
}

/// How many presses of each kind to make, rounded up to whole batches in every part: as many as
/// HFP_SOAK_PRESSES says, otherwise as many as a test run has time for.
std::size_t wantedPresses() {
    const char* const setting = std::getenv("HFP_SOAK_PRESSES");
    const std::string text = setting == nullptr ? "3200" : setting;
    std::size_t presses = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), presses);
    if (error != std::errc{} || end != text.data() + text.size() || presses == 0) {
        throw std::invalid_argument("HFP_SOAK_PRESSES is no number of presses: " + text);
    }
    constexpr auto step = parts * batch;
    return (presses + step - 1) / step * step;
}

class SoakTest : public testing::Test {
protected:
    SoakTest() {
        story.turnRepetitionOff();
        story.bind(toOne, one);
        story.bind(toOther, other);
        story.writeShortcuts();
        story.launchUtility();
    }

    std::vector<xcb_keycode_t> keysOf(const Combination& combination) {
        std::vector<xcb_keycode_t> keys;
        std::ranges::transform(combination.keys(), std::back_inserter(keys),
                               [&](const std::string& key) { return story.keyboard.keycode(key); });
        return keys;
    }

    void strike(const std::vector<xcb_keycode_t>& keys) {
        for (const auto key : keys) {
            story.keyboard.press(key);
        }
        for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
            story.keyboard.release(*key);
        }
    }

    /// Brings both applications forward in turn, and waits for each arrival. Returns how many
    /// arrived.
    std::size_t pressBound(std::size_t count) {
        const std::vector<std::vector<xcb_keycode_t>> keys{keysOf(toOther), keysOf(toOne)};
        for (std::size_t press = 0; press < count; ++press) {
            strike(keys[press % 2]);
            if (!front.wait(windows[press % 2])) {
                return press;
            }
        }
        return count;
    }

    void pressUnbound(std::size_t count) {
        const auto keys = keysOf(toNobody);
        for (std::size_t press = 0; press < count; ++press) {
            strike(keys);
        }
    }

    /// Waits, because a window manager may answer a request before we have heard of it ourselves.
    bool sawRequests(std::size_t count) {
        return waitUntil([&] { return requests.count() >= count; });
    }

    /// Makes `count` presses of each kind, after `done` earlier ones of each.
    void pressBoth(std::size_t count, std::size_t done) {
        for (const auto end = done + count; done < end; done += batch) {
            ASSERT_EQ(pressBound(batch), batch) << "after " << done << " presses";
            ASSERT_TRUE(sawRequests(warmUp + done + batch)) << requests.count() - warmUp;
            pressUnbound(batch);
        }
        ASSERT_TRUE(waitUntil([&] { return unboundSeen() >= done; }, 60s)) << unboundSeen();
        ASSERT_TRUE(story.getsKeys(one));
    }

    Footprint footprint() { return footprintOf(story.utility().pid(), story.pager); }

    void expectNoMoreThan(const Footprint& before, std::size_t presses) {
        const auto now = footprint();
        std::cout << presses << " presses of each kind: " << now << std::endl;
        EXPECT_LE(now.memory, before.memory + slackAfter(presses));
        EXPECT_EQ(now.threads, before.threads);
        EXPECT_EQ(now.descriptors, before.descriptors);
        EXPECT_EQ(now.displayClients, before.displayClients);
    }

    std::size_t unboundSeen() {
        const auto key = keysOf(toNobody).back();
        return one.downs(key) + other.downs(key);
    }

    const Combination toOne{37, control | option};
    const Combination toOther{38, control | option};
    const Combination toNobody{40, control | option};
    Story story;
    Application& other = story.open("Other");
    Application& one = story.open("One");
    const std::vector<xcb_window_t> windows{other.windows().at(0), one.windows().at(0)};
    ActivationRequests requests{story.desktop.display()};
    FrontWatch front{story.desktop.display()};
};

TEST_F(SoakTest, NoPressIsLostOrDoneTwiceAndNothingGrows) {
    const auto presses = wantedPresses();
    ASSERT_TRUE(story.areLive());
    ASSERT_EQ(pressBound(warmUp), warmUp);
    ASSERT_TRUE(sawRequests(warmUp));
    ASSERT_EQ(requests.count(), warmUp);
    const auto before = footprint();
    std::cout << "warm: " << before << std::endl;
    for (std::size_t done = 0; done < presses; done += presses / parts) {
        ASSERT_NO_FATAL_FAILURE(pressBoth(presses / parts, done));
        expectNoMoreThan(before, done + presses / parts);
    }

    EXPECT_EQ(requests.count() - warmUp, presses) << "one activation for each bound press";
    EXPECT_EQ(unboundSeen(), presses) << "and every other press reaches who is in front, once";
    EXPECT_TRUE(story.nobodySaw(toOne));
    EXPECT_TRUE(story.nobodySaw(toOther));
    EXPECT_EQ(one.starts() + other.starts(), 2);
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
}

} // namespace
} // namespace hollowfernpike
