#pragma once

#include <algorithm>
#include <string_view>

namespace hollowfernpike {

/// The letter if it is no capital of ASCII, else the small one.
constexpr char smallLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether the texts differ in nothing but capitals of ASCII.
constexpr bool isSameButForCapitals(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, smallLetter, smallLetter);
}

} // namespace hollowfernpike
