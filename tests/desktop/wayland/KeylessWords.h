#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// What the program writes where the compositor's configuration has to bind the keys.
struct KeylessWords {
    std::string japanese;
    std::string english;
};

/// In a session that calls itself so, on a compositor that the program does not know.
inline KeylessWords keylessIn(const std::string& session) {
    return {.japanese = "この Wayland セッション (" + session +
                        ")はキー入力を最前面のウインドウだけに見せるため",
            .english =
                "This Wayland session (" + session + ") shows keys to the window in front alone"};
}

/// On sway.
inline const KeylessWords keylessOnSway{.japanese = "ショートカットは sway 自身の設定に必要です",
                                        .english = "sway shows keys to the window in front alone"};

/// How often the text has these words.
inline std::size_t timesIn(std::string_view text, std::string_view words) {
    std::size_t count = 0;
    for (auto at = text.find(words); at != std::string_view::npos; at = text.find(words, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace hollowfernpike::test
