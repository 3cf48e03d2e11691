#include "model/UUID.h"

#include <random>

namespace hollowfernpike {

namespace {

constexpr std::string_view form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
constexpr std::string_view digits = "0123456789ABCDEF";

std::optional<std::uint8_t> digitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<std::uint8_t>(digit - '0');
    }
    const char lower = static_cast<char>(digit | 0x20);
    if (lower >= 'a' && lower <= 'f') {
        return static_cast<std::uint8_t>(lower - 'a' + 10);
    }
    return std::nullopt;
}

} // namespace

UUID UUID::random() {
    std::random_device entropy;
    std::uniform_int_distribution<unsigned> anyByte(0, 0xFF);
    Bytes bytes{};
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(anyByte(entropy));
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
        const auto value = digitValue(text[index]);
        if (!value) {
            return std::nullopt;
        }
        auto& byte = bytes.at(digitCount / 2);
        byte = static_cast<std::uint8_t>(byte << 4 | *value);
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
