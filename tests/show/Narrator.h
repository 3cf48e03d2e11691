#pragma once

#include <chrono>
#include <string>

namespace hollowfernpike::show {

/// For people: "12.3 ms".
std::string format(std::chrono::nanoseconds time);

/// Tells what happens, one line a fact, and remembers whether all of it was true.
class Narrator {
public:
    void heading(const std::string& text) const;
    void fact(const std::string& text, bool isTrue = true);

    bool everythingWasTrue() const { return lies_ == 0; }

private:
    int lies_ = 0;
};

} // namespace hollowfernpike::show
