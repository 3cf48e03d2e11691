#pragma once

#include "comparison/Builds.h"
#include "comparison/Table.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace hollowfernpike::bench {

struct ResidenceEffort {
    std::chrono::seconds untilIdle{}; ///< the last timer of a start ends after 20 s, on X11
    std::chrono::seconds idle{};
    int typedKeys = 0;
    int starts = 0;
};

/// None for another build than ours.
struct ResidenceBudgets {
    std::optional<double> start; ///< seconds
    std::optional<double> wakeUps;
    std::optional<double> resident; ///< bytes
    std::optional<double> privateDirty;
};

inline constexpr double mebibyte = 1024 * 1024; // what process lists mean by M

/// Where the program lives while one looks at what it costs.
class ResidenceScene {
public:
    ResidenceScene() = default;
    ResidenceScene(const ResidenceScene&) = delete;
    ResidenceScene& operator=(const ResidenceScene&) = delete;
    virtual ~ResidenceScene() = default;

    /// Starts it and ends it; returns the seconds until its combination is live.
    virtual double timeStart() = 0;

    /// Runs it, and calls `look` with its process once it has started and sleeps.
    virtual void settleAndRun(const std::function<void(pid_t)>& look) = 0;

    /// Types that many keys which nobody binds, each when the one before has had its effect.
    virtual void type(int keys, pid_t process) = 0;
};

/// What it costs to have the program run: time to start, wake-ups and memory when nothing happens.
void measureResidence(Table& table, ResidenceScene& scene, ResidenceEffort effort,
                      const ResidenceBudgets& budgets);

/// The same for each build, in a scene of its own.
template <typename Scene>
void measureResidences(Table& table, const Builds& builds, const std::string& where,
                       ResidenceEffort effort, const ResidenceBudgets& budgetsOfOurs) {
    for (const auto& build : builds) {
        Scene scene(build);
        table.section("Residence of " + build.name + ", " + where);
        measureResidence(table, scene, effort,
                         &build == &builds.front() ? budgetsOfOurs : ResidenceBudgets{});
    }
}

/// The same on X11.
void measureResidenceOnX11(Table& table, const Builds& builds, ResidenceEffort effort);

} // namespace hollowfernpike::bench
