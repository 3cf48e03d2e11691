#include "comparison/Residence.h"

#include "comparison/Processes.h"
#include "comparison/Statistics.h"

#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace hollowfernpike::bench {

namespace {

Figure wakeUps(const std::string& when, std::int64_t count, std::optional<double> budget) {
    return {.what = "wake-ups, " + when,
            .value = static_cast<double>(count),
            .unit = Unit::count,
            .percentile95 = {},
            .budget = budget};
}

Figure memory(const std::string& what, std::int64_t bytes, std::optional<double> budget) {
    return {.what = what,
            .value = static_cast<double>(bytes),
            .unit = Unit::bytes,
            .percentile95 = {},
            .budget = budget};
}

void addStart(Table& table, ResidenceScene& scene, int starts, std::optional<double> budget) {
    std::vector<double> seconds;
    scene.timeStart();
    for (int start = 0; start < starts; ++start) {
        seconds.push_back(scene.timeStart());
    }
    table.add({.what = "start to combination live",
               .value = median(seconds),
               .percentile95 = percentile95(seconds),
               .budget = budget});
}

void addWakeUps(Table& table, ResidenceScene& scene, ResidenceEffort effort, pid_t process,
                std::optional<double> budget) {
    std::this_thread::sleep_for(effort.untilIdle);
    const auto before = contextSwitches(process);
    std::this_thread::sleep_for(effort.idle);
    const auto afterIdling = contextSwitches(process);
    scene.type(effort.typedKeys, process);
    const auto afterTyping = contextSwitches(process);
    table.add(wakeUps(std::to_string(effort.idle.count()) + " s without a key",
                      afterIdling - before, budget));
    table.add(wakeUps(std::to_string(effort.typedKeys) + " unbound keys typed elsewhere",
                      afterTyping - afterIdling, budget));
}

} // namespace

void measureResidence(Table& table, ResidenceScene& scene, ResidenceEffort effort,
                      const ResidenceBudgets& budgets) {
    addStart(table, scene, effort.starts, budgets.start);
    scene.settleAndRun([&](pid_t process) {
        addWakeUps(table, scene, effort, process, budgets.wakeUps);
        const auto used = memoryOf(process);
        table.add(memory("resident memory", used.resident, budgets.resident));
        table.add(memory("private dirty memory", used.privateDirty, budgets.privateDirty));
    });
}

} // namespace hollowfernpike::bench
