#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

namespace hollowfernpike::test {

using namespace std::chrono_literals;

/// How long to wait for what other programs do, also on a machine that is busy.
inline constexpr std::chrono::milliseconds patience = 30s;

/// Asks `condition` until it holds: each millisecond at first, more rarely later. False if it does
/// not hold within `longest`. Asking takes a third of the time at most, so that the machine is left
/// to those who make the condition true.
template <class Condition>
[[nodiscard]] bool waitUntil(Condition&& condition, std::chrono::milliseconds longest = patience) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    for (auto asked = begin; !condition();) {
        const auto answered = Clock::now();
        const auto waited = answered - begin;
        if (waited >= longest) {
            return false;
        }
        const auto pause = std::max(2 * (answered - asked), waited / 50);
        std::this_thread::sleep_for(std::clamp<Clock::duration>(pause, 1ms, 50ms));
        asked = Clock::now();
    }
    return true;
}

} // namespace hollowfernpike::test
