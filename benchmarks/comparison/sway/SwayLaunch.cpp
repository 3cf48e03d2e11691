#include "comparison/LaunchReports.h"
#include "comparison/sway/Sway.h"
#include "comparison/sway/SwayArena.h"
#include "comparison/sway/SwayContestants.h"

namespace hollowfernpike::bench {

namespace {

class LaunchOnSway {
public:
    std::vector<Series> race(const Builds& builds, Rounds rounds) {
        return bench::race(racers(builds), rounds, [this](pid_t process) {
            arena_.keyboard.strike(interlude.keys());
            arena_.settle(process);
            return arena_.timePress([this] { return reports_.whenStarted(); });
        });
    }

private:
    std::vector<Racer> racers(const Builds& builds) {
        auto racers = oursOnSway(arena_, builds, application_);
        racers.push_back(bindingOfSway(arena_, "sway", Role::peer, "exec " + reports_.command()));
        return racers;
    }

    SwayArena arena_;
    LaunchReports reports_{arena_.desktop.commonGround()};
    InstalledApplication application_ =
        install(arena_.desktop.applications(), "Launched", reports_.command());
    test::Application& other_ = arena_.open("Other");
};

} // namespace

// No budget: these figures are for comparison only.
void measureLaunchOnSway(Table& table, const Builds& builds, Rounds rounds) {
    LaunchOnSway scene;
    table.section("Key press to main() of a program, sway", fairness(rounds));
    report(table, scene.race(builds, rounds), {});
}

} // namespace hollowfernpike::bench
