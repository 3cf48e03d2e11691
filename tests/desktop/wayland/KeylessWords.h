#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// What the program writes where it cannot see the keys, in a session that calls itself so.
struct KeylessWords {
    std::string japanese;
    std::string english;
};

/// Without the session's name if that is empty.
inline KeylessWords keylessIn(const std::string& session) {
    const auto name = session.empty() ? std::string{} : " (" + session + ')';
    return {.japanese =
                "この Wayland セッション" + name + "では、他のプログラムのキー入力を検出する方法",
            .english = "In this Wayland session" + name + " there is no way yet to see the keys"};
}

/// How often the text has these words.
inline std::size_t timesIn(std::string_view text, std::string_view words) {
    std::size_t count = 0;
    for (auto at = text.find(words); at != std::string_view::npos; at = text.find(words, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace hollowfernpike::test
