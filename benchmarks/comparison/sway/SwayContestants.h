#pragma once

#include "comparison/Builds.h"
#include "comparison/Race.h"
#include "comparison/Shortcuts.h"
#include "comparison/sway/SwayArena.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// The program at work on sway, from the moment when its combinations are live to its orderly end.
class RunningOnSway {
public:
    /// Throws std::runtime_error if it does not bind them.
    RunningOnSway(const SwayArena& arena, const Build& build,
                  const InstalledApplication& application);
    RunningOnSway(const RunningOnSway&) = delete;
    RunningOnSway& operator=(const RunningOnSway&) = delete;
    ~RunningOnSway();

    pid_t pid() const { return process_->pid(); }

private:
    bool holdsCombinations();

    std::unique_ptr<test::ChildProcess> process_;
};

/// All of these act on the combination as long as they run; the arena must outlive them.
std::vector<Racer> oursOnSway(SwayArena& arena, const Builds& builds,
                              const InstalledApplication& application);

/// Sway's own binding of one of its commands. `name` stands for both in the table.
Racer bindingOfSway(SwayArena& arena, const std::string& name, Role role,
                    const std::string& command);

} // namespace hollowfernpike::bench
