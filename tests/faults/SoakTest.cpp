#include "desktop/ActivationRequests.h"
#include "desktop/FrontWatch.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::size_t warmUp = 500;
constexpr std::size_t batch = 100;

/// How much more the utility may take up afterwards: what the allocator keeps for itself comes and
/// goes by some pages, while a byte for each press of a long run would be seen.
constexpr std::size_t slack = 1024; // KiB

/// Of each kind, in whole batches: what the test command can wait for, or what the environment
/// wants.
std::size_t wantedPresses() {
    const char* const wanted = std::getenv("HFP_SOAK_PRESSES");
    const std::size_t presses = wanted == nullptr ? 2000 : std::stoul(wanted);
    return (presses + batch - 1) / batch * batch;
}

/// What a process takes up.
struct Footprint {
    std::size_t resident = 0; ///< KiB
    std::size_t threads = 0;
    std::size_t descriptors = 0;
    std::size_t displayClients = 0;
};

Footprint footprintOf(pid_t process, Pager& pager) {
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    Footprint result;
    std::ifstream status(folder / "status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            status >> result.resident;
        } else if (word == "Threads:") {
            status >> result.threads;
        }
    }
    const std::filesystem::directory_iterator descriptors(folder / "fd");
    result.descriptors = static_cast<std::size_t>(std::distance(begin(descriptors), {}));
    result.displayClients = pager.clients(process);
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint) {
    return stream << footprint.resident << " KiB resident, " << footprint.threads << " threads, "
                  << footprint.descriptors << " descriptors, " << footprint.displayClients
                  << " connections to the display";
}

class SoakTest : public testing::Test {
protected:
    SoakTest() {
        story.bind(toOne, one);
        story.bind(toOther, other);
        story.writeShortcuts();
        // A sanitizer holds freed memory back to catch late uses, and must not look like a leak.
        story.launchUtility(
            {{"ASAN_OPTIONS", "quarantine_size_mb=1:thread_local_quarantine_size_kb=64"}});
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

    /// Goes to and fro between both applications, and waits for each arrival. How often it arrived.
    std::size_t pressBound(std::size_t count) {
        const std::vector<std::vector<xcb_keycode_t>> keys{keysOf(toOther), keysOf(toOne)};
        for (std::size_t press = 0; press < count; ++press) {
            strike(keys[press % 2]);
            if (!front.wait(windows[press % 2], 20s)) {
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

    /// A window manager may answer a request before we have heard of it ourselves.
    bool sawRequests(std::size_t count) {
        return waitUntil([&] { return requests.count() >= count; });
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
    ASSERT_TRUE(story.areLive());
    ASSERT_EQ(pressBound(warmUp), warmUp);
    ASSERT_TRUE(sawRequests(warmUp));
    const auto requested = requests.count();
    const auto before = footprintOf(story.utility().pid(), story.pager);
    const auto start = std::chrono::steady_clock::now();
    const auto presses = wantedPresses();
    for (std::size_t done = 0; done < presses; done += batch) {
        ASSERT_EQ(pressBound(batch), batch) << "after " << done << " presses";
        ASSERT_TRUE(sawRequests(requested + done + batch)) << requests.count() - requested;
        pressUnbound(batch);
    }
    ASSERT_TRUE(waitUntil([&] { return unboundSeen() >= presses; }, 60s)) << unboundSeen();
    ASSERT_TRUE(story.getsKeys(one));
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const auto after = footprintOf(story.utility().pid(), story.pager);
    std::cout << presses << " bound and " << presses << " unbound presses in " << time.count()
              << " s, " << requests.count() - requested << " activations\nbefore: " << before
              << "\nafter:  " << after << std::endl;

    EXPECT_EQ(requests.count() - requested, presses) << "one activation for each bound press";
    EXPECT_EQ(unboundSeen(), presses) << "and every other press reaches who is in front, once";
    EXPECT_TRUE(story.nobodySaw(toOne));
    EXPECT_TRUE(story.nobodySaw(toOther));
    EXPECT_EQ(one.starts() + other.starts(), 2);
    EXPECT_LE(after.resident, before.resident + slack);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.displayClients, before.displayClients);
}

} // namespace
} // namespace hollowfernpike
