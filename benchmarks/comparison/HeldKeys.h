#pragma once

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

} // namespace hollowfernpike::bench
