#include "platform/freedesktop/entries/ExecQuoting.h"

#include <string_view>

#include <glib.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                   "0123456789/._+-@:,%";
constexpr std::string_view escapedInQuotes = "\"`$\\";

std::string withoutFieldCodes(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        result.append(letter == '%' ? 2 : 1, letter);
    }
    return result;
}

std::string quoted(const std::string& text) {
    if (text.find_first_not_of(plain) == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char letter : text) {
        if (escapedInQuotes.find(letter) != std::string_view::npos) {
            result += '\\';
        }
        result += letter;
    }
    return result + '"';
}

} // namespace

std::optional<std::string> execLineFor(const std::filesystem::path& program) {
    const auto& path = program.native();
    const bool isUtf8 =
        g_utf8_validate(path.data(), static_cast<gssize>(path.size()), nullptr) != FALSE;
    const bool hasPercent = path.find('%') != std::string::npos;
    // Those who start entries look for a program named "%%" as it stands there, but fill in "%%" in
    // arguments; and "env" takes an argument with "=" for a variable.
    const bool needsEnv = hasPercent;
    if (!isUtf8 || (needsEnv && path.find('=') != std::string::npos)) {
        return std::nullopt;
    }
    return (needsEnv ? "env " : "") + quoted(withoutFieldCodes(path));
}

} // namespace hollowfernpike::freedesktop
