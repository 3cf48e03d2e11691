#include "show/Typing.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace hollowfernpike::show {

namespace {

/// Keys side by side, by what they type; the first is number 1 in the row.
struct Row {
    const char* name;
    std::string_view characters;
};

constexpr std::array rows{
    Row{"AE", "1234567890-="},
    Row{"AD", "qwertyuiop[]"},
    Row{"AC", "asdfghjkl;'"},
    Row{"AB", "zxcvbnm,./"},
};

std::string keyOf(char character) {
    if (character == ' ' || character == '\n') {
        return character == ' ' ? "SPCE" : "RTRN";
    }
    for (const auto& row : rows) {
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

void type(test::KeyInjector& keyboard, std::string_view text) {
    for (const char character : text) {
        const auto letter = static_cast<unsigned char>(character);
        const auto key = keyOf(static_cast<char>(std::tolower(letter)));
        if (std::isupper(letter) != 0) {
            keyboard.strike({"LFSH", key});
        } else {
            keyboard.strike({key});
        }
    }
}

} // namespace hollowfernpike::show
