#pragma once

#include "comparison/Shortcuts.h"

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::bench {

/// Keys that are held down until this is destroyed.
template <class Keyboard>
class HeldKeys {
public:
    HeldKeys(Keyboard& keyboard, std::vector<std::string> keys)
        : keyboard_(keyboard), keys_(std::move(keys)) {
        for (const auto& key : keys_) {
            keyboard_.press(key);
        }
        keyboard_.sync(); // the server may wait before it presses one
    }
    HeldKeys(const HeldKeys&) = delete;
    HeldKeys& operator=(const HeldKeys&) = delete;
    ~HeldKeys() {
        for (auto key = keys_.rbegin(); key != keys_.rend(); ++key) {
            keyboard_.release(*key);
        }
    }

private:
    Keyboard& keyboard_;
    std::vector<std::string> keys_;
};

/// Waits for the effect of a key press and returns its time; absent if there is none.
using Arrival = std::function<std::optional<std::chrono::steady_clock::time_point>()>;

/// Holds the combination's modifiers, calls `prepare`, presses `key`, which is the combination's on
/// that keyboard, and calls `arrival`. Returns the seconds from the press to the effect. Throws
/// std::runtime_error if there is none.
template <class Keyboard, class Key>
double timePress(Keyboard& keyboard, const Key& key, const std::function<void()>& prepare,
                 const Arrival& arrival) {
    auto modifiers = combination.keys();
    modifiers.pop_back();
    const HeldKeys held(keyboard, modifiers);
    prepare();
    const auto start = std::chrono::steady_clock::now();
    keyboard.press(key);
    const auto end = arrival();
    keyboard.release(key);
    if (!end) {
        throw std::runtime_error("a press of the combination had no effect");
    }
    return std::chrono::duration<double>(*end - start).count();
}

} // namespace hollowfernpike::bench
