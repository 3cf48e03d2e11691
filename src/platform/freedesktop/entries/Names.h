#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// The text with its ASCII letters in lower case.
inline std::string folded(std::string_view text) {
    std::string result(text);
    for (auto& letter : result) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return result;
}

/// What stands behind the last slash.
inline std::string_view fileName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace hollowfernpike::freedesktop
