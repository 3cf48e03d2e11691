#include "comparison/Arena.h"
#include "comparison/Contestant.h"
#include "comparison/Residence.h"
#include "desktop/resident/StatusMenu.h"

#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

constexpr ResidenceBudgets budgetsOnX11{
    .start = 0.06, .wakeUps = 0, .resident = 30 * mebibyte, .privateDirty = 4 * mebibyte};

class SceneOnX11 final : public ResidenceScene {
public:
    explicit SceneOnX11(const Build& build)
        : contestant_(ours(build, arena_.desktop,
                           arena_.install("Target", arena_.programFile("Target")))) {}

    double timeStart() override {
        const auto start = Arena::Clock::now();
        const RunningContestant running(arena_.desktop, contestant_);
        const std::chrono::duration<double> taken = Arena::Clock::now() - start;
        arena_.settle(running.pid());
        return taken.count();
    }

    void settleAndRun(const std::function<void(pid_t)>& look) override {
        panel_.startHost();
        const RunningContestant running(arena_.desktop, contestant_);
        if (const auto shown = panel_.showsItem(); !shown) {
            throw std::runtime_error(shown.message());
        }
        arena_.bringToFront(window_);
        arena_.settle(running.pid());
        look(running.pid());
    }

    void type(int keys, pid_t process) override {
        for (int typed = 0; typed < keys; ++typed) {
            arena_.keyboard.strike({"LFSH", "AC11"});
            arena_.settle(process);
        }
    }

private:
    Arena arena_;
    test::StatusMenu panel_{arena_.desktop};
    xcb_window_t window_ = arena_.open("Target");
    Contestant contestant_;
};

} // namespace

void measureResidenceOnX11(Table& table, const Builds& builds, ResidenceEffort effort) {
    measureResidences<SceneOnX11>(table, builds, "item shown in a panel", effort, budgetsOnX11);
}

} // namespace hollowfernpike::bench
