#include "comparison/sway/FocusReports.h"
#include "comparison/sway/Sway.h"
#include "comparison/sway/SwayArena.h"
#include "comparison/sway/SwayContestants.h"

#include <string>
#include <vector>

namespace hollowfernpike::bench {

namespace {

constexpr double activationBudgetOnSway = 0.4;
constexpr int furtherProgramsOnSway = 10;
constexpr int windowsOfEachOnSway = 5;

class ActivationOnSway {
public:
    std::vector<Series> race(Rounds rounds) {
        return bench::race(racers(), rounds, [this](pid_t process) {
            arena_.bringToFront(other_);
            arena_.settle(process);
            reports_.forget();
            return arena_.timePress([this] { return reports_.whenFocused(); });
        });
    }

    void openFurtherWindows() {
        for (int program = 0; program < furtherProgramsOnSway; ++program) {
            arena_.open("Further" + std::to_string(program), windowsOfEachOnSway);
        }
    }

private:
    std::vector<Racer> racers() {
        return {
            oursOnSway(arena_, {target_.entry(), target_.name()}),
            bindingOfSway(arena_, "sway + swaymsg", "exec swaymsg '[app_id=Target] focus'"),
            bindingOfSway(arena_, "sway alone, for comparison", "[app_id=Target] focus"),
        };
    }

    SwayArena arena_;
    FocusReports reports_{arena_.desktop.home()};
    test::Application& target_ = arena_.open("Target", 1, reports_.options());
    test::Application& other_ = arena_.open("Other");
};

/// Sway alone is no peer, because it cannot start what does not run. It shows how much of the time
/// is sway's in any case.
void reportOnSway(Table& table, std::vector<Series> results) {
    const auto swayAlone = results.back();
    results.pop_back();
    report(table, results, activationBudgetOnSway);
    report(table, swayAlone);
}

} // namespace

void measureActivationOnSway(Table& table, Rounds rounds) {
    ActivationOnSway scene;
    const std::string what = "Key press to other window has the keys, sway";
    table.section(what + ", 2 windows", fairness(rounds));
    reportOnSway(table, scene.race(rounds));
    scene.openFurtherWindows();
    table.section(what + ", 52 windows", fairness(rounds));
    reportOnSway(table, scene.race(rounds));
}

} // namespace hollowfernpike::bench
