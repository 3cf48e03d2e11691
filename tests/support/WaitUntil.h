#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

namespace hollowfernpike::test {

using namespace std::chrono_literals;

/// How long to wait for what other programs do, also on a machine that is busy.
inline constexpr std::chrono::milliseconds patience = 30s;

/// Asks `condition` until it holds, each millisecond at first and more rarely later; false if it
/// does not within `longest`.
template <class Condition>
[[nodiscard]] bool waitUntil(Condition&& condition, std::chrono::milliseconds longest = patience) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    while (!condition()) {
        const auto waited = Clock::now() - begin;
        if (waited >= longest) {
            return false;
        }
        std::this_thread::sleep_for(std::clamp<Clock::duration>(waited / 100, 1ms, 20ms));
    }
    return true;
}

} // namespace hollowfernpike::test
