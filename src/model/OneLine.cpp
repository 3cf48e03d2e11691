#include "model/OneLine.h"

#include "model/json/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace hollowfernpike {

namespace {

/// Characters that change the direction of what follows, from one to another.
struct Directions {
    char32_t first;
    char32_t last;
};

constexpr Directions directions[] = {
    {0x061C, 0x061C}, {0x200E, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069}};

std::string escaped(const char* format, unsigned value) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, value);
    return buffer.data();
}

std::string oneByte(char character) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return byte < 0x20 || byte == 0x7F ? escaped("\\u%04x", byte) : std::string{character};
    }
}

/// Control characters beyond ASCII: U+0080 to U+009F, and the line and paragraph separators.
std::string longSequence(std::string_view sequence) {
    if (sequence >= "\xC2\x80" && sequence <= "\xC2\x9F") {
        return escaped("\\u%04x", static_cast<unsigned char>(sequence[1]));
    }
    if (sequence == "\u2028" || sequence == "\u2029") {
        return sequence == "\u2028" ? "\\u2028" : "\\u2029";
    }
    return std::string{sequence};
}

/// Takes one character, or one byte that is not UTF-8, off the front of `rest`.
std::string_view takeCharacter(std::string_view& rest) {
    const auto character = rest.substr(0, std::max<std::size_t>(utf8SequenceLength(rest), 1));
    rest.remove_prefix(character.size());
    return character;
}

/// Of a sequence of two or three bytes; 0 for others.
char32_t codePoint(std::string_view sequence) {
    const auto bits = [&](std::size_t index, unsigned mask) {
        return static_cast<unsigned char>(sequence[index]) & mask;
    };
    switch (utf8SequenceLength(sequence)) {
    case 2:
        return bits(0, 0x1FU) << 6U | bits(1, 0x3FU);
    case 3:
        return bits(0, 0x0FU) << 12U | bits(1, 0x3FU) << 6U | bits(2, 0x3FU);
    default:
        return 0;
    }
}

std::string shown(std::string_view character) {
    if (utf8SequenceLength(character) == 0) {
        return escaped("\\x%02x", static_cast<unsigned char>(character.front()));
    }
    return character.size() == 1 ? oneByte(character.front()) : longSequence(character);
}

} // namespace

std::string withoutDirections(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        const auto point = codePoint(character);
        const bool isOne = std::ranges::any_of(directions, [&](const auto& some) {
            return some.first <= point && point <= some.last;
        });
        plain += isOne ? escaped("\\u%04x", point) : std::string{character};
    }
    return plain;
}

std::string oneLine(std::string_view text) {
    return excerpt(text, text.size());
}

std::string excerpt(std::string_view text, std::size_t characters) {
    std::string line;
    for (; !text.empty() && characters > 0; --characters) {
        line += shown(takeCharacter(text));
    }
    return text.empty() ? line : line + "...";
}

} // namespace hollowfernpike
