#include "model/OneLine.h"

#include "model/json/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace hollowfernpike {

namespace {

struct Direction {
    std::string_view character;
    std::string_view escape;
};

// In bytes: written out, they would turn this source around.
constexpr Direction directions[] = {
    {"\xD8\x9C", "\\u061c"},     {"\xE2\x80\x8E", "\\u200e"}, {"\xE2\x80\x8F", "\\u200f"},
    {"\xE2\x80\xAA", "\\u202a"}, {"\xE2\x80\xAB", "\\u202b"}, {"\xE2\x80\xAC", "\\u202c"},
    {"\xE2\x80\xAD", "\\u202d"}, {"\xE2\x80\xAE", "\\u202e"}, {"\xE2\x81\xA6", "\\u2066"},
    {"\xE2\x81\xA7", "\\u2067"}, {"\xE2\x81\xA8", "\\u2068"}, {"\xE2\x81\xA9", "\\u2069"},
};

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
        const auto* const known = std::ranges::find(directions, character, &Direction::character);
        plain += known == std::end(directions) ? character : known->escape;
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
