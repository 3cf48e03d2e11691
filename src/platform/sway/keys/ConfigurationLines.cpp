#include "platform/sway/keys/ConfigurationLines.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace hollowfernpike::sway {

namespace {

constexpr std::string_view blanks = " \t\r";

/// The next word of a text, without its quotes; absent at the end.
std::optional<std::string> takeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    if (text.empty()) {
        return std::nullopt;
    }
    std::string word;
    char quote = '\0';
    while (!text.empty() &&
           (quote != '\0' || blanks.find(text.front()) == std::string_view::npos)) {
        const char letter = text.front();
        text.remove_prefix(1);
        if (quote == '\0' && (letter == '"' || letter == '\'')) {
            quote = letter;
        } else if (letter == quote) {
            quote = '\0';
        } else {
            word += letter;
        }
    }
    return word;
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    while (auto word = takeWord(text)) {
        words.push_back(*std::move(word));
    }
    return words;
}

std::string_view takeLine(std::string_view& text) {
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

bool isRemark(std::string_view line) {
    const auto begin = line.find_first_not_of(blanks);
    return begin != std::string_view::npos && line[begin] == '#';
}

} // namespace

std::vector<ConfigurationLine> configurationLines(std::string_view text) {
    std::vector<ConfigurationLine> lines;
    std::string whole;
    while (!text.empty()) {
        const auto line = takeLine(text);
        if (whole.empty() && isRemark(line)) {
            continue;
        }
        whole += line;
        if (whole.ends_with('\\') && !text.empty()) {
            whole.pop_back();
            continue;
        }
        auto words = wordsOf(std::exchange(whole, {}));
        if (words == ConfigurationLine{"{"} && !lines.empty()) {
            lines.back().emplace_back("{");
        } else if (!words.empty()) {
            lines.push_back(std::move(words));
        }
    }
    return lines;
}

} // namespace hollowfernpike::sway
