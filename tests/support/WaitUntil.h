#pragma once

#include <chrono>
#include <thread>

namespace hollowfernpike::test {

using namespace std::chrono_literals;

/// How long to wait for what other programs do, also on a machine that is busy.
inline constexpr std::chrono::milliseconds patience = 20s;

/// Asks `condition` every millisecond until it holds; false if it does not within `longest`.
template <class Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds longest = patience) {
    const auto deadline = std::chrono::steady_clock::now() + longest;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

} // namespace hollowfernpike::test
