// Measures what the program promises: its parts by themselves, then the whole of it on a private
// desktop, side by side with other hotkey tools. Ends with 0 unless something could not be
// measured.

#include "comparison/Activation.h"
#include "comparison/Launch.h"
#include "comparison/Parts.h"
#include "comparison/Residence.h"

#include <cstdio>
#include <exception>
#include <string_view>

namespace hollowfernpike::bench {

namespace {

using namespace std::chrono_literals;

struct Effort {
    Rounds activation{.blocks = 20, .perBlock = 10};
    Rounds launch{.blocks = 10, .perBlock = 10};
    ResidenceEffort residence{.idle = 60s, .typedKeys = 500, .starts = 20};
    int repetitions = 5;
    std::chrono::milliseconds atLeast = 200ms;
};

/// Enough to see that everything can be measured, not for the figures' sake.
constexpr Effort quick{.activation = {.blocks = 1, .perBlock = 3},
                       .launch = {.blocks = 1, .perBlock = 3},
                       .residence = {.idle = 1s, .typedKeys = 20, .starts = 2},
                       .repetitions = 2,
                       .atLeast = 1ms};

void attempt(Table& table, const char* what, const std::function<void()>& measure) {
    try {
        measure();
    } catch (const std::exception& error) {
        table.addFailure(what, error.what());
    }
}

int run(const Effort& effort) {
    Table table;
    attempt(table, "parts", [&] { measureParts(table, effort.repetitions, effort.atLeast); });
    attempt(table, "activation", [&] { measureActivation(table, effort.activation); });
    attempt(table, "launch", [&] { measureLaunch(table, effort.launch); });
    attempt(table, "residence", [&] { measureResidence(table, effort.residence); });
    table.finish();
    return table.isComplete() ? 0 : 1;
}

} // namespace

} // namespace hollowfernpike::bench

int main(int count, char** arguments) {
    using namespace hollowfernpike::bench;
    const bool isQuick = count == 2 && std::string_view(arguments[1]) == "--quick";
    if (count > 1 && !isQuick) {
        std::fputs("usage: bench [--quick]\n", stderr);
        return 2;
    }
    return run(isQuick ? quick : Effort{});
}
