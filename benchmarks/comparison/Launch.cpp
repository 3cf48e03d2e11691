#include "comparison/Launch.h"

#include "comparison/Arena.h"
#include "comparison/Contestant.h"
#include "comparison/LaunchReports.h"

namespace hollowfernpike::bench {

namespace {

constexpr double launchBudget = 0.6;

class LaunchScene {
public:
    std::vector<Series> race(Rounds rounds) {
        return bench::race(racersOn(arena_.desktop, contestants()), rounds, [this](pid_t process) {
            arena_.keyboard.strike(interlude.keys());
            arena_.settle(process);
            return arena_.timePress([this] { return reports_.whenStarted(); });
        });
    }

private:
    std::vector<Contestant> contestants() const {
        const auto& desktop = arena_.desktop;
        return {
            ours(desktop, application_),
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

void measureLaunch(Table& table, Rounds rounds) {
    LaunchScene scene;
    table.section("Key press to main() of a program", fairness(rounds));
    report(table, scene.race(rounds), launchBudget);
}

} // namespace hollowfernpike::bench
