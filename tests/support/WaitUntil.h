#pragma once

#include <chrono>
#include <thread>

namespace hollowfernpike::test {

using namespace std::chrono_literals;

/// Asks `condition` every millisecond until it holds; false if it does not within `bound`.
template <class Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds bound = 10s) {
    const auto deadline = std::chrono::steady_clock::now() + bound;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

} // namespace hollowfernpike::test
