// Measures what the program costs: single functions, then the whole program on private desktops,
// its key presses side by side with other hotkey tools and, if one is named, with another build.
// Ends with 0 unless something could not be measured; a missed budget does not count.

#include "comparison/Activation.h"
#include "comparison/Builds.h"
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
#include <filesystem>
#include <functional>
#include <iterator>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace hollowfernpike::bench {

namespace {

using namespace std::chrono_literals;

struct Plan {
    Builds builds{{.name = "hollowfernpike", .program = HFP_PROGRAM}};
    Rounds activation{.blocks = 20, .perBlock = 10};
    Rounds launch{.blocks = 10, .perBlock = 10};
    ResidenceEffort residence{.untilIdle = 21s, .idle = 60s, .typedKeys = 500, .starts = 20};
    WindowsEffort windows{.starts = 10, .changes = 10};
    int repetitions = 5;
    std::chrono::milliseconds atLeast = 200ms;
};

/// Measures just enough to see that everything can be measured; the figures say nothing.
Plan inAHurry() {
    return {.activation = {.blocks = 1, .perBlock = 3},
            .launch = {.blocks = 1, .perBlock = 3},
            .residence = {.untilIdle = 0s, .idle = 1s, .typedKeys = 20, .starts = 2},
            .windows = {.starts = 1, .changes = 1},
            .repetitions = 2,
            .atLeast = 1ms};
}

/// Something to measure, and the argument that chooses it.
struct Section {
    std::string_view name;
    std::function<void(Table&, const Plan&)> measure;
};

const std::array<Section, 6>& sections() {
    static const std::array<Section, 6> all{{
        {"parts", [](auto& table,
                     const auto& plan) { measureParts(table, plan.repetitions, plan.atLeast); }},
        {"activation",
         [](auto& table, const auto& plan) {
             measureActivation(table, plan.builds, plan.activation);
         }},
        {"launch",
         [](auto& table, const auto& plan) { measureLaunch(table, plan.builds, plan.launch); }},
        {"residence",
         [](auto& table, const auto& plan) {
             measureResidenceOnX11(table, plan.builds, plan.residence);
         }},
        {"windows", [](auto& table, const auto& plan) { measureWindows(table, plan.windows); }},
        {"sway",
         [](auto& table, const auto& plan) {
             measureActivationOnSway(table, plan.builds, plan.activation);
             measureLaunchOnSway(table, plan.builds, plan.launch);
             measureResidenceOnSway(table, plan.builds, plan.residence);
         }},
    }};
    return all;
}

bool isProgram(const std::filesystem::path& file) {
    return std::filesystem::is_regular_file(file) && ::access(file.c_str(), X_OK) == 0;
}

bool isKnown(std::string_view name) {
    return std::ranges::find(sections(), name, &Section::name) != sections().end();
}

/// Measures the named sections, or all if none is named.
int run(const Plan& plan, const std::vector<std::string_view>& names) {
    Table table;
    for (const auto& section : sections()) {
        if (!names.empty() && std::ranges::find(names, section.name) == names.end()) {
            continue;
        }
        try {
            section.measure(table, plan);
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
    Plan plan = std::erase(names, "--quick") != 0 ? inAHurry() : Plan{};
    const auto beside = std::ranges::find(names, "--beside");
    if (std::distance(beside, names.end()) > 1 && isProgram(beside[1])) {
        plan.builds.push_back(
            {.name = "the other build", .program = std::filesystem::absolute(beside[1])});
        names.erase(beside, beside + 2);
    }
    if (!std::ranges::all_of(names, isKnown)) {
        std::fputs("usage: bench [--quick] [--beside PROGRAM] "
                   "[parts|activation|launch|residence|windows|sway]...\n",
                   stderr);
        return 2;
    }
    return run(plan, names);
}
