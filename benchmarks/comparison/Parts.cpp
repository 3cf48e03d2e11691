#include "comparison/Parts.h"

#include "support/ChildProcess.h"
#include "support/WaitUntil.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include <nlohmann/json.hpp>

namespace hollowfernpike::bench {

namespace {

using namespace std::chrono_literals;

constexpr auto longestMeasuring = 15min;

struct Budget {
    std::string_view benchmark;
    double seconds;
};

constexpr std::array budgets{
    Budget{"callbackMiss/10000", 100e-9},  Budget{"callbackHit/10000", 200e-9},
    Budget{"mapBuild/10000", 4e-3},        Budget{"load/10000/real_time", 15e-3},
    Budget{"save/10000/real_time", 12e-3},
};

std::optional<double> budgetOf(std::string_view benchmark) {
    for (const auto& budget : budgets) {
        if (budget.benchmark == benchmark) {
            return budget.seconds;
        }
    }
    return std::nullopt;
}

/// "mapBuild/1000/real_time" for people: "map build, 1000 shortcuts".
std::string readable(std::string_view benchmark) {
    constexpr std::string_view clock = "/real_time";
    benchmark.remove_suffix(benchmark.ends_with(clock) ? clock.size() : 0);
    std::string text;
    for (const char letter : benchmark) {
        if (letter == '/') {
            text += ", ";
        } else if (letter >= 'A' && letter <= 'Z') {
            text += {' ', static_cast<char>(letter - 'A' + 'a')};
        } else {
            text += letter;
        }
    }
    return text + (text.ends_with('0') ? " shortcuts" : "");
}

double secondsPer(const std::string& unit) {
    if (unit == "ns") {
        return 1e-9;
    }
    return unit == "us" ? 1e-6 : 1e-3;
}

nlohmann::json run(int repetitions, std::chrono::milliseconds atLeast) {
    const std::chrono::duration<double> seconds = atLeast;
    test::ChildProcess program({HFP_MICRO_BENCHMARKS, "--benchmark_format=json",
                                "--benchmark_repetitions=" + std::to_string(repetitions),
                                "--benchmark_report_aggregates_only=true",
                                "--benchmark_min_time=" + std::to_string(seconds.count())});
    const auto isDone = [&] {
        program.output(); // a full pipe would stop it
        return program.hasEnded();
    };
    if (!test::waitUntil(isDone, longestMeasuring) || program.wait() != 0) {
        throw std::runtime_error("the micro benchmarks failed: " + program.errors());
    }
    return nlohmann::json::parse(program.output());
}

} // namespace

void measureParts(Table& table, int repetitions, std::chrono::milliseconds atLeast) {
    table.section("Parts by themselves");
    std::size_t judged = 0;
    const auto results = run(repetitions, atLeast);
    for (const auto& result : results.at("benchmarks")) {
        if (result.contains("error_occurred")) {
            throw std::runtime_error(result.at("error_message").get<std::string>());
        }
        if (result.at("aggregate_name") != "median") {
            continue;
        }
        const auto name = result.at("run_name").get<std::string>();
        const auto budget = budgetOf(name);
        judged += budget ? 1U : 0U;
        table.add(
            {.what = readable(name),
             .value = result.at("real_time").get<double>() * secondsPer(result.at("time_unit")),
             .percentile95 = {},
             .budget = budget});
    }
    if (judged != budgets.size()) {
        throw std::runtime_error("not every part that has a budget was measured");
    }
}

} // namespace hollowfernpike::bench
