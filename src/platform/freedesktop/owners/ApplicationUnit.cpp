#include "platform/freedesktop/owners/ApplicationUnit.h"

#include "platform/freedesktop/entries/Names.h"

#include <array>
#include <charconv>
#include <optional>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::size_t longestUnitName = 255;
constexpr std::size_t uniquePart = 37; // a separator and a UUID at the end of a snap's unit

std::optional<char> escapedAt(std::string_view text) {
    unsigned code = 0;
    if (!text.starts_with("\\x") || text.size() < 4) {
        return std::nullopt;
    }
    const auto [end, error] = std::from_chars(text.data() + 2, text.data() + 4, code, 16);
    return error == std::errc{} && end == text.data() + 4 ? std::optional(static_cast<char>(code))
                                                          : std::nullopt;
}

std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto escaped = escapedAt(text);
        result += escaped.value_or(text.front());
        text.remove_prefix(escaped ? 4 : 1);
    }
    return result;
}

bool needsNoEscape(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == ':' || letter == '_' || letter == '.';
}

std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char letter : text) {
        if (needsNoEscape(letter) && (letter != '.' || !result.empty())) {
            result += letter;
            continue;
        }
        const auto code = static_cast<unsigned char>(letter);
        result += "\\x";
        result += digits[code >> 4U];
        result += digits[code & 0xFU];
    }
    return result;
}

bool takeSuffix(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix)) {
        return false;
    }
    text.remove_suffix(suffix.size());
    return true;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

// An application's unit: its name without "app-" and type. A scope's name ends in a random part.
struct Unit {
    std::string_view name;
    bool isScope = false;
};

std::optional<Unit> unitAround(std::string_view controlGroup) {
    std::optional<Unit> innermost;
    for (auto name : split(controlGroup, '/')) {
        const bool isScope = takeSuffix(name, ".scope");
        if ((isScope || takeSuffix(name, ".service")) && name.starts_with("app-")) {
            innermost = Unit{name.substr(4), isScope};
        }
    }
    return innermost;
}

} // namespace

std::vector<std::string> applicationsOfUnit(std::string_view controlGroup) {
    const auto unit = unitAround(controlGroup);
    if (!unit) {
        return {};
    }
    const auto at = unit->name.rfind('@');
    const auto parts = split(unit->name.substr(0, at), '-');
    std::vector<std::string> applications;
    const bool hasRandomPart = at == std::string_view::npos && parts.size() > 1;
    if (hasRandomPart) {
        applications.push_back(unescaped(parts[parts.size() - 2]));
    }
    if (!unit->isScope) {
        applications.push_back(unescaped(parts.back()));
    }
    return applications;
}

std::string snapApplication(std::string_view controlGroup) {
    auto unit = fileName(controlGroup);
    if (!takeSuffix(unit, ".scope") || unit.size() < uniquePart) {
        return {};
    }
    unit.remove_suffix(uniquePart);
    const auto parts = split(unit, '.');
    if (parts.size() != 3 || parts[0] != "snap") {
        return {};
    }
    return std::string{parts[1]} + '_' + std::string{parts[2]};
}

std::string applicationScope(std::string_view identifier, int process) {
    const auto name =
        "app-hollowfernpike-" + escaped(identifier) + '-' + std::to_string(process) + ".scope";
    return name.size() <= longestUnitName ? name : std::string{};
}

} // namespace hollowfernpike::freedesktop
