#include "model/UUID.h"

#include <cstring>
#include <random>

namespace hollowfernpike {

namespace {

constexpr std::string_view form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
constexpr std::string_view digits = "0123456789ABCDEF";

constexpr std::uint8_t noDigit = 0xFF;

/// By character. A table, because branches on random digits would be mispredicted.
constexpr auto digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    std::uint8_t value = 0;
    for (const char digit : digits) {
        values.at(static_cast<std::uint8_t>(digit)) = value;
        values.at(static_cast<std::uint8_t>(digit | 0x20)) = value; // letters in lower case
        ++value;
    }
    return values;
}();

} // namespace

UUID UUID::random() {
    std::random_device entropy;
    std::uniform_int_distribution<std::uint32_t> anyWord;
    Bytes bytes{};
    for (std::size_t start = 0; start < bytes.size(); start += sizeof(std::uint32_t)) {
        const auto word = anyWord(entropy);
        std::memcpy(&bytes.at(start), &word, sizeof word);
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80); // RFC 4122 variant
    return UUID{bytes};
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != form.size()) {
        return std::nullopt;
    }
    Bytes bytes{};
    std::size_t digitCount = 0;
    for (std::size_t index = 0; index < form.size(); ++index) {
        if (form[index] == '-') {
            if (text[index] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const auto value = digitValues.at(static_cast<std::uint8_t>(text[index]));
        if (value == noDigit) {
            return std::nullopt;
        }
        auto& byte = bytes.at(digitCount / 2);
        byte = static_cast<std::uint8_t>(byte << 4 | value);
        ++digitCount;
    }
    return UUID{bytes};
}

std::string UUID::text() const {
    std::string result{form};
    std::size_t digitCount = 0;
    for (auto& character : result) {
        if (character != '-') {
            const auto byte = bytes_.at(digitCount / 2);
            character = digits[digitCount % 2 == 0 ? byte >> 4 : byte & 0x0F];
            ++digitCount;
        }
    }
    return result;
}

} // namespace hollowfernpike
