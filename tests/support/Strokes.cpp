#include "support/Strokes.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

/// Keys side by side, by what they type; the first is number 1 in the row.
struct KeyRow {
    const char* name;
    std::string_view characters;
};

constexpr std::array keyRows{
    KeyRow{"AE", "1234567890-="},
    KeyRow{"AD", "qwertyuiop[]"},
    KeyRow{"AC", "asdfghjkl;'"},
    KeyRow{"AB", "zxcvbnm,./"},
};

std::string keyThatTypes(char character) {
    if (character == ' ' || character == '\n') {
        return character == ' ' ? "SPCE" : "RTRN";
    }
    for (const auto& row : keyRows) {
        const auto place = row.characters.find(character);
        if (place != std::string_view::npos) {
            std::array<char, 5> name{};
            std::snprintf(name.data(), name.size(), "%s%02zu", row.name, place % 99 + 1);
            return name.data();
        }
    }
    throw std::invalid_argument(std::string{"no key types "} + character);
}

} // namespace

std::vector<Stroke> strokesFor(std::string_view text) {
    std::vector<Stroke> strokes;
    for (const char character : text) {
        const auto letter = static_cast<unsigned char>(character);
        const auto key = keyThatTypes(static_cast<char>(std::tolower(letter)));
        strokes.push_back(std::isupper(letter) != 0 ? Stroke{"LFSH", key} : Stroke{key});
    }
    return strokes;
}

} // namespace hollowfernpike::test
