#include "comparison/Activation.h"

#include "comparison/Arena.h"
#include "comparison/Contestant.h"

#include <array>
#include <optional>

namespace hollowfernpike::bench {

namespace {

/// A window manager, and how large the ratio to the best peer may be under it.
struct Ground {
    std::string windowManager;
    std::optional<double> fewWindows;
    std::optional<double> manyWindows;
};

/// No budgets for Mutter: it takes so much of the time itself that the ratio says little about us.
const std::array<Ground, 2> grounds{{
    {.windowManager = "openbox", .fewWindows = 0.22, .manyWindows = 0.36},
    {.windowManager = "mutter", .fewWindows = {}, .manyWindows = {}},
}};
constexpr int furtherPrograms = 10;
constexpr int windowsOfEach = 5;

class ActivationScene {
public:
    explicit ActivationScene(const std::string& windowManager) : arena_(windowManager) {}

    std::vector<Series> race(const Builds& builds, Rounds rounds) {
        return bench::race(racersOn(arena_.desktop, builds, application_, peers()), rounds,
                           [this](pid_t process) {
                               arena_.bringToFront(other_);
                               arena_.settle(process);
                               return arena_.timePress([this] { return whenInFront(target_); });
                           });
    }

    void openFurtherWindows() {
        for (int program = 0; program < furtherPrograms; ++program) {
            arena_.open("Further" + std::to_string(program), windowsOfEach);
        }
    }

private:
    std::vector<Contestant> peers() const {
        const auto& desktop = arena_.desktop;
        const std::string windowControl = "wmctrl -x -a Target.Target";
        return {
            sxhkd(desktop, "sxhkd + wmctrl", windowControl),
            xbindkeys(desktop, "xbindkeys + wmctrl", windowControl),
            sxhkd(desktop, "sxhkd + xdotool", "xdotool search --class Target windowactivate"),
        };
    }

    std::optional<Arena::Clock::time_point> whenInFront(xcb_window_t window) {
        const auto arrival = arena_.front.wait(window);
        return arrival ? std::optional{arrival->time} : std::nullopt;
    }

    Arena arena_;
    InstalledApplication application_ = arena_.install("Target", arena_.programFile("Target"));
    xcb_window_t target_ = arena_.open("Target");
    xcb_window_t other_ = arena_.open("Other");
};

} // namespace

void measureActivation(Table& table, const Builds& builds, Rounds rounds) {
    for (const auto& ground : grounds) {
        ActivationScene scene(ground.windowManager);
        const auto what = "Key press to other window active, " + ground.windowManager;
        table.section(what + ", 2 windows", fairness(rounds));
        report(table, scene.race(builds, rounds), ground.fewWindows);
        scene.openFurtherWindows();
        table.section(what + ", 52 windows", fairness(rounds));
        report(table, scene.race(builds, rounds), ground.manyWindows);
    }
}

} // namespace hollowfernpike::bench
