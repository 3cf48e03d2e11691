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
    std::vector<Series> race(const Builds& builds, Rounds rounds) {
        return bench::race(racers(builds), rounds, [this](pid_t process) {
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
    std::vector<Racer> racers(const Builds& builds) {
        auto racers = oursOnSway(arena_, builds, {target_.entry(), target_.name()});
        racers.push_back(bindingOfSway(arena_, "sway + swaymsg", Role::peer,
                                       "exec swaymsg '[app_id=Target] focus'"));
        // No peer, because sway alone cannot start a program that does not run.
        racers.push_back(bindingOfSway(arena_, "sway alone, for comparison", Role::reference,
                                       "[app_id=Target] focus"));
        return racers;
    }

    SwayArena arena_;
    FocusReports reports_{arena_.desktop.home()};
    test::Application& target_ = arena_.open("Target", 1, reports_.options());
    test::Application& other_ = arena_.open("Other");
};

} // namespace

void measureActivationOnSway(Table& table, const Builds& builds, Rounds rounds) {
    ActivationOnSway scene;
    const std::string what = "Key press to other window has the keys, sway";
    table.section(what + ", 2 windows", fairness(rounds));
    report(table, scene.race(builds, rounds), activationBudgetOnSway);
    scene.openFurtherWindows();
    table.section(what + ", 52 windows", fairness(rounds));
    report(table, scene.race(builds, rounds), activationBudgetOnSway);
}

} // namespace hollowfernpike::bench
