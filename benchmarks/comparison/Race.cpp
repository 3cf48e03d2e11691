#include "comparison/Race.h"

#include "comparison/Statistics.h"

#include <algorithm>
#include <span>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

constexpr int warmUps = 2;

Series& seriesOf(std::vector<Series>& results, const std::string& contestant) {
    return *std::ranges::find(results, contestant, &Series::contestant);
}

void runBlock(Arena& arena, const Contestant& contestant, int rounds,
              const std::function<double(pid_t)>& measure, Series& series) {
    const RunningContestant running(arena.desktop, contestant);
    try {
        for (int round = -warmUps; round < rounds; ++round) {
            const double seconds = measure(running.pid());
            if (round >= 0) {
                series.seconds.push_back(seconds);
            }
        }
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(contestant.name + ": " + error.what());
    }
}

} // namespace

std::vector<Series> race(Arena& arena, std::vector<Contestant> contestants, Rounds rounds,
                         const std::function<double(pid_t)>& measure) {
    std::vector<Series> results;
    for (const auto& contestant : contestants) {
        results.push_back({contestant.name, {}});
    }
    for (int block = 0; block < rounds.blocks; ++block) {
        for (const auto& contestant : contestants) {
            runBlock(arena, contestant, rounds.perBlock, measure,
                     seriesOf(results, contestant.name));
        }
        std::rotate(contestants.begin(), contestants.begin() + 1, contestants.end());
    }
    return results;
}

std::string fairness(Rounds rounds) {
    return std::to_string(rounds.blocks * rounds.perBlock) + " presses for each, in turns of " +
           std::to_string(rounds.perBlock) + " with nobody else running; peers use a light shell";
}

void report(Table& table, const std::vector<Series>& results, std::optional<double> budget) {
    std::vector<double> medians;
    for (const auto& series : results) {
        medians.push_back(median(series.seconds));
        table.add({.what = series.contestant,
                   .value = medians.back(),
                   .percentile95 = percentile95(series.seconds),
                   .budget = {}});
    }
    const auto bestPeer = std::ranges::min(std::span(medians).subspan(1));
    table.add({.what = "ratio to the best peer",
               .value = medians.front() / bestPeer,
               .unit = Unit::ratio,
               .percentile95 = {},
               .budget = budget});
}

} // namespace hollowfernpike::bench
