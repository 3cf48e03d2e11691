#include "platform/freedesktop/files/PercentEncoding.h"

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view always =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

} // namespace

std::string percentEncoded(std::string_view text, std::string_view kept) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char letter : text) {
        if (always.find(letter) != std::string_view::npos ||
            kept.find(letter) != std::string_view::npos) {
            result += letter;
        } else {
            const auto byte = static_cast<unsigned char>(letter);
            result += {'%', digits[byte / 16U], digits[byte % 16U]};
        }
    }
    return result;
}

} // namespace hollowfernpike::freedesktop
