#pragma once

#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>

namespace hollowfernpike::show {

/// For people: "12.3 ms".
inline std::string format(std::chrono::nanoseconds time) {
    std::array<char, 64> text{};
    const std::chrono::duration<double, std::milli> milliseconds = time;
    std::snprintf(text.data(), text.size(), "%.1f ms", milliseconds.count());
    return text.data();
}

/// Tells what happens, one line a fact, and remembers whether all of it was true.
class Narrator {
public:
    void heading(const std::string& text) const { std::cout << text << std::endl; }

    void fact(const std::string& text, bool isTrue = true) {
        lies_ += isTrue ? 0 : 1;
        std::cout << (isTrue ? "  " : "  NOT TRUE: ") << text << std::endl;
    }

    bool everythingWasTrue() const { return lies_ == 0; }

private:
    int lies_ = 0;
};

} // namespace hollowfernpike::show
