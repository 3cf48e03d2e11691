#include "comparison/Launch.h"

#include "comparison/Arena.h"
#include "comparison/Contestant.h"
#include "comparison/LaunchReports.h"

namespace hollowfernpike::bench {

namespace {

constexpr double launchBudget = 0.8;

class LaunchScene {
public:
    std::vector<Series> race(const Builds& builds, Rounds rounds) {
        return bench::race(racersOn(arena_.desktop, builds, application_, peers()), rounds,
                           [this](pid_t process) {
                               arena_.keyboard.strike(interlude.keys());
                               arena_.settle(process);
                               return arena_.timePress([this] { return reports_.whenStarted(); });
                           });
    }

private:
    std::vector<Contestant> peers() const {
        const auto& desktop = arena_.desktop;
        return {
            sxhkd(desktop, "sxhkd", reports_.command()),
            xbindkeys(desktop, "xbindkeys", reports_.command()),
        };
    }

    Arena arena_;
    LaunchReports reports_{arena_.desktop.home()};
    InstalledApplication application_ = arena_.install("Launched", reports_.command());
    xcb_window_t other_ = arena_.open("Other");
};

} // namespace

void measureLaunch(Table& table, const Builds& builds, Rounds rounds) {
    LaunchScene scene;
    table.section("Key press to main() of a program", fairness(rounds));
    report(table, scene.race(builds, rounds), launchBudget);
}

} // namespace hollowfernpike::bench
