#include "model/json/JsonString.h"

#include <array>
#include <cstdint>

namespace hollowfernpike {

namespace {

/// For each byte the letter behind the backslash: 'u' for the long form, 0 if it is not escaped.
constexpr auto escapes = [] {
    std::array<char, 256> letters{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        letters.at(control) = 'u';
    }
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\n'] = 'n';
    letters['\r'] = 'r';
    letters['\t'] = 't';
    letters['"'] = '"';
    letters['\\'] = '\\';
    letters['/'] = '/';
    return letters;
}();

void appendEscape(std::string& document, std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    document += '\\';
    document += escapes.at(byte);
    if (escapes.at(byte) == 'u') {
        document += "00";
        document += digits[byte >> 4];
        document += digits[byte & 0x0F];
    }
}

} // namespace

void appendJsonString(std::string& document, std::string_view text) {
    document += '"';
    std::size_t written = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto byte = static_cast<std::uint8_t>(text[index]);
        if (escapes.at(byte) != 0) {
            document += text.substr(written, index - written);
            appendEscape(document, byte);
            written = index + 1;
        }
    }
    document += text.substr(written);
    document += '"';
}

} // namespace hollowfernpike
