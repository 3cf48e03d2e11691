#pragma once

#include "comparison/Builds.h"
#include "comparison/Table.h"

#include <chrono>
#include <functional>

#include <sys/types.h>

namespace hollowfernpike::bench {

struct ResidenceEffort {
    std::chrono::seconds untilIdle{}; ///< for the timers that run once after a start
    std::chrono::seconds idle{};
    int typedKeys = 0;
    int starts = 0;
};

struct ResidenceBudgets {
    double start = 0;    ///< seconds
    double resident = 0; ///< bytes
    double privateDirty = 0;
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

    /// Runs it, and calls `look` with its process once it has nothing to do any more.
    virtual void settleAndRun(const std::function<void(pid_t)>& look) = 0;

    /// Types that many keys which nobody binds, each when the one before has had its effect.
    virtual void type(int keys, pid_t process) = 0;
};

/// What it costs to have the program run: time to start, wake-ups and memory when nothing happens.
void measureResidence(Table& table, ResidenceScene& scene, ResidenceEffort effort,
                      const ResidenceBudgets& budgets);

/// The same on X11, for each build.
void measureResidenceOnX11(Table& table, const Builds& builds, ResidenceEffort effort);

} // namespace hollowfernpike::bench
