#include "comparison/sway/SwayContestants.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

/// The combination as sway's configuration calls it.
std::string keysOf(const SwayArena& arena) {
    return "Ctrl+Mod1+" + std::to_string(arena.keyboard.keycode(combination.keyName()));
}

/// A binding of sway's own that lives as long as this.
class Binding {
public:
    Binding(const SwayArena& arena, const std::string& command)
        : ipc_(arena.desktop.ipc()), keys_(keysOf(arena)) {
        ipc_.command("bindcode --no-repeat " + keys_ + " " + command);
    }
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;
    ~Binding() {
        try {
            ipc_.command("unbindcode " + keys_);
        } catch (const std::runtime_error&) {
            // Sway is gone, and its bindings with it. What was measured until then is still told.
            return;
        }
    }

private:
    const test::SwayIpc& ipc_;
    std::string keys_;
};

} // namespace

RunningOnSway::RunningOnSway(const SwayArena& arena, const Build& build,
                             const InstalledApplication& application) {
    test::writeFile(shortcutsFile(arena.desktop.dataHome()), shortcutList(application));
    auto environment = arena.desktop.environment();
    // Sway tells nobody what is bound, but the program's log does: one line for each time.
    environment["QT_LOGGING_RULES"] = "hollowfernpike.keys.debug=true";
    process_ =
        std::make_unique<test::ChildProcess>(std::vector<std::string>{build.program}, environment);
    if (!test::waitUntil([this] { return holdsCombinations(); })) {
        throw std::runtime_error(build.name +
                                 " does not bind the combinations: " + process_->errors());
    }
}

RunningOnSway::~RunningOnSway() {
    process_->signal(SIGTERM);
    static_cast<void>(process_->wait());
}

bool RunningOnSway::holdsCombinations() {
    return process_->errors().find(" bound 2 combinations\n") != std::string::npos;
}

std::vector<Racer> oursOnSway(SwayArena& arena, const Builds& builds,
                              const InstalledApplication& application) {
    std::vector<Racer> racers;
    for (const auto& build : builds) {
        racers.push_back({.name = build.name,
                          .role = Role::build,
                          .run = [&arena, build, application](auto& race) {
                              const RunningOnSway running(arena, build, application);
                              race(running.pid());
                          }});
    }
    return racers;
}

Racer bindingOfSway(SwayArena& arena, const std::string& name, Role role,
                    const std::string& command) {
    return {.name = name, .role = role, .run = [&arena, command](const auto& race) {
                const Binding binding(arena, command);
                race(arena.desktop.compositor().pid());
            }};
}

} // namespace hollowfernpike::bench
