#include "comparison/sway/Sway.h"
#include "comparison/sway/SwayArena.h"
#include "comparison/sway/SwayContestants.h"

#include <stdexcept>
#include <utility>

namespace hollowfernpike::bench {

namespace {

constexpr ResidenceBudgets budgetsOnSway{
    .start = 0.12, .wakeUps = 0, .resident = 30 * mebibyte, .privateDirty = 4 * mebibyte};

constexpr const char* unboundKey = "AC11";

class SceneOnSway final : public ResidenceScene {
public:
    explicit SceneOnSway(Build build) : build_(std::move(build)) {}

    double timeStart() override {
        const auto start = SwayArena::Clock::now();
        const RunningOnSway running(arena_, build_, application_);
        const std::chrono::duration<double> taken = SwayArena::Clock::now() - start;
        arena_.settle(running.pid());
        return taken.count();
    }

    void settleAndRun(const std::function<void(pid_t)>& look) override {
        const RunningOnSway running(arena_, build_, application_);
        arena_.bringToFront(front_);
        arena_.settle(running.pid());
        look(running.pid());
    }

    void type(int keys, pid_t process) override {
        for (int typed = 0; typed < keys; ++typed) {
            arena_.keyboard.strike({unboundKey});
            arena_.settle(process);
        }
        if (front_.ups(arena_.keyboard.keycode(unboundKey)) != static_cast<std::size_t>(keys)) {
            throw std::runtime_error("not every key that was typed has reached the window");
        }
    }

private:
    Build build_;
    SwayArena arena_;
    test::Application& front_ = arena_.open("Front");
    InstalledApplication application_{front_.entry(), front_.name()};
};

} // namespace

void measureResidenceOnSway(Table& table, const Builds& builds, ResidenceEffort effort) {
    measureResidences<SceneOnSway>(table, builds, "on sway", effort, budgetsOnSway);
}

} // namespace hollowfernpike::bench
