// Measures what the program costs: single functions, then the whole program on private desktops,
// its key presses side by side with other hotkey tools. Ends with 0 unless something could not be
// measured; a missed budget does not count.

#include "comparison/Activation.h"
#include "comparison/Launch.h"
#include "comparison/Parts.h"
#include "comparison/Residence.h"
#include "comparison/Windows.h"
#include "comparison/sway/Sway.h"
#include "support/BareEnvironment.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <functional>
#include <string_view>
#include <vector>

namespace hollowfernpike::bench {

namespace {

using namespace std::chrono_literals;

struct Effort {
    Rounds activation{.blocks = 20, .perBlock = 10};
    Rounds launch{.blocks = 10, .perBlock = 10};
    ResidenceEffort residence{.idle = 60s, .typedKeys = 500, .starts = 20};
    WindowsEffort windows{.starts = 10, .changes = 10};
    int repetitions = 5;
    std::chrono::milliseconds atLeast = 200ms;
};

/// Enough to see that everything can be measured; the figures say nothing.
constexpr Effort quick{.activation = {.blocks = 1, .perBlock = 3},
                       .launch = {.blocks = 1, .perBlock = 3},
                       .residence = {.idle = 1s, .typedKeys = 20, .starts = 2},
                       .windows = {.starts = 1, .changes = 1},
                       .repetitions = 2,
                       .atLeast = 1ms};

/// Something to measure, and the argument that chooses it.
struct Section {
    std::string_view name;
    std::function<void(Table&, const Effort&)> measure;
};

const std::array<Section, 6>& sections() {
    static const std::array<Section, 6> all{{
        {"parts",
         [](auto& table, const auto& effort) {
             measureParts(table, effort.repetitions, effort.atLeast);
         }},
        {"activation",
         [](auto& table, const auto& effort) { measureActivation(table, effort.activation); }},
        {"launch", [](auto& table, const auto& effort) { measureLaunch(table, effort.launch); }},
        {"residence",
         [](auto& table, const auto& effort) { measureResidenceOnX11(table, effort.residence); }},
        {"windows", [](auto& table, const auto& effort) { measureWindows(table, effort.windows); }},
        {"sway",
         [](auto& table, const auto& effort) {
             measureActivationOnSway(table, effort.activation);
             measureLaunchOnSway(table, effort.launch);
             measureResidenceOnSway(table, effort.residence);
         }},
    }};
    return all;
}

bool isKnown(std::string_view name) {
    return std::ranges::find(sections(), name, &Section::name) != sections().end();
}

/// Measures the named sections, or all if none is named.
int run(const Effort& effort, const std::vector<std::string_view>& names) {
    Table table;
    for (const auto& section : sections()) {
        if (!names.empty() && std::ranges::find(names, section.name) == names.end()) {
            continue;
        }
        try {
            section.measure(table, effort);
        } catch (const std::exception& error) {
            table.addFailure(std::string{section.name}, error.what());
        }
    }
    table.finish();
    return table.isComplete() ? 0 : 1;
}

} // namespace

} // namespace hollowfernpike::bench

int main(int count, char** arguments) {
    using namespace hollowfernpike::bench;
    hollowfernpike::test::enterBareEnvironment();
    std::vector<std::string_view> names(arguments + 1, arguments + count);
    const bool isQuick = std::erase(names, "--quick") != 0;
    if (!std::ranges::all_of(names, isKnown)) {
        std::fputs("usage: bench [--quick] [parts|activation|launch|residence|windows|sway]...\n",
                   stderr);
        return 2;
    }
    return run(isQuick ? quick : Effort{}, names);
}
