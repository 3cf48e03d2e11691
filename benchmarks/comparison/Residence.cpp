#include "comparison/Residence.h"

#include "comparison/Arena.h"
#include "comparison/Contestant.h"
#include "comparison/Processes.h"
#include "comparison/Statistics.h"
#include "desktop/resident/StatusMenu.h"

#include <stdexcept>
#include <thread>

namespace hollowfernpike::bench {

namespace {

constexpr double startBudget = 0.1;
constexpr double mebibyte = 1024 * 1024; // what process lists mean by M
constexpr double residentBudget = 26 * mebibyte;
constexpr double privateDirtyBudget = 4 * mebibyte;
constexpr double noWakeUps = 0;

class ResidenceScene {
public:
    double timeStart() {
        const auto start = Arena::Clock::now();
        const RunningContestant running(arena_.desktop, contestant_);
        const std::chrono::duration<double> taken = Arena::Clock::now() - start;
        arena_.settle(running.pid());
        return taken.count();
    }

    void settleAndRun(const std::function<void(pid_t)>& look) {
        panel_.startHost();
        const RunningContestant running(arena_.desktop, contestant_);
        if (const auto shown = panel_.showsItem(); !shown) {
            throw std::runtime_error(shown.message());
        }
        arena_.bringToFront(window_);
        arena_.settle(running.pid());
        look(running.pid());
    }

    void type(int keys, pid_t process) {
        const auto key = arena_.keyboard.keycode("AC11");
        for (int typed = 0; typed < keys; ++typed) {
            arena_.keyboard.press(key);
            arena_.keyboard.release(key);
            arena_.settle(process);
        }
    }

private:
    Arena arena_;
    test::StatusMenu panel_{arena_.desktop};
    xcb_window_t window_ = arena_.open("Target");
    Contestant contestant_ =
        ours(arena_.desktop, {arena_.install("Target", arena_.programFile("Target")), "Target"});
};

Figure wakeUps(const std::string& when, std::int64_t count) {
    return {.what = "wake-ups, " + when,
            .value = static_cast<double>(count),
            .unit = Unit::count,
            .percentile95 = {},
            .budget = noWakeUps};
}

Figure memory(const std::string& what, std::int64_t bytes, double budget) {
    return {.what = what,
            .value = static_cast<double>(bytes),
            .unit = Unit::bytes,
            .percentile95 = {},
            .budget = budget};
}

void addStart(Table& table, ResidenceScene& scene, int starts) {
    std::vector<double> seconds;
    scene.timeStart();
    for (int start = 0; start < starts; ++start) {
        seconds.push_back(scene.timeStart());
    }
    table.add({.what = "start to combination live",
               .value = median(seconds),
               .percentile95 = percentile95(seconds),
               .budget = startBudget});
}

void addWakeUps(Table& table, ResidenceScene& scene, ResidenceEffort effort, pid_t process) {
    const auto before = contextSwitches(process);
    std::this_thread::sleep_for(effort.idle);
    const auto afterIdling = contextSwitches(process);
    scene.type(effort.typedKeys, process);
    const auto afterTyping = contextSwitches(process);
    table.add(
        wakeUps(std::to_string(effort.idle.count()) + " s without a key", afterIdling - before));
    table.add(wakeUps(std::to_string(effort.typedKeys) + " unbound keys typed elsewhere",
                      afterTyping - afterIdling));
}

} // namespace

void measureResidence(Table& table, ResidenceEffort effort) {
    ResidenceScene scene;
    table.section("Residence, item shown in a panel");
    addStart(table, scene, effort.starts);
    scene.settleAndRun([&](pid_t process) {
        addWakeUps(table, scene, effort, process);
        const auto used = memoryOf(process);
        table.add(memory("resident memory", used.resident, residentBudget));
        table.add(memory("private dirty memory", used.privateDirty, privateDirtyBudget));
    });
}

} // namespace hollowfernpike::bench
