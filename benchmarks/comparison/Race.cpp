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

void runRounds(const std::string& contestant, int rounds, const std::function<double()>& measure,
               Series& series) {
    try {
        for (int round = -warmUps; round < rounds; ++round) {
            const double seconds = measure();
            if (round >= 0) {
                series.seconds.push_back(seconds);
            }
        }
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(contestant + ": " + error.what());
    }
}

void addRatio(Table& table, const std::string& toWhat, const Series& ours, double theirs,
              std::optional<double> budget) {
    table.add({.what = "ratio to " + toWhat,
               .value = median(ours.seconds) / theirs,
               .unit = Unit::ratio,
               .percentile95 = {},
               .budget = budget});
}

} // namespace

std::vector<Series> race(std::vector<Racer> racers, Rounds rounds,
                         const std::function<double(pid_t)>& measure) {
    std::vector<Series> results;
    for (const auto& racer : racers) {
        results.push_back({.contestant = racer.name, .role = racer.role, .seconds = {}});
    }
    for (int block = 0; block < rounds.blocks; ++block) {
        for (const auto& racer : racers) {
            racer.run([&](pid_t process) {
                runRounds(
                    racer.name, rounds.perBlock, [&] { return measure(process); },
                    seriesOf(results, racer.name));
            });
        }
        std::rotate(racers.begin(), racers.begin() + 1, racers.end());
    }
    return results;
}

std::string fairness(Rounds rounds) {
    return std::to_string(rounds.blocks * rounds.perBlock) + " presses for each, in turns of " +
           std::to_string(rounds.perBlock) + " with nobody else running; peers use a light shell";
}

void report(Table& table, const std::vector<Series>& results, std::optional<double> budget) {
    std::optional<double> bestPeer;
    for (const auto& series : results) {
        const auto seconds = median(series.seconds);
        table.add({.what = series.contestant,
                   .value = seconds,
                   .percentile95 = percentile95(series.seconds),
                   .budget = {}});
        if (series.role == Role::peer) {
            bestPeer = std::min(seconds, bestPeer.value_or(seconds));
        }
    }
    addRatio(table, "the best peer", results.front(), bestPeer.value(), budget);
    for (const auto& series : std::span(results).subspan(1)) {
        if (series.role == Role::build) {
            addRatio(table, series.contestant, results.front(), median(series.seconds), {});
        }
    }
}

} // namespace hollowfernpike::bench
