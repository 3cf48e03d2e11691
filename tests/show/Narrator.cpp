#include "show/Narrator.h"

#include <array>
#include <cstdio>

namespace hollowfernpike::show {

namespace {

void print(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

} // namespace

std::string format(std::chrono::nanoseconds time) {
    std::array<char, 64> text{};
    const std::chrono::duration<double, std::milli> milliseconds = time;
    std::snprintf(text.data(), text.size(), "%.1f ms", milliseconds.count());
    return text.data();
}

void Narrator::heading(const std::string& text) const {
    print(text);
}

void Narrator::fact(const std::string& text, bool isTrue) {
    lies_ += isTrue ? 0 : 1;
    print((isTrue ? "  " : "  NOT TRUE: ") + text);
}

} // namespace hollowfernpike::show
