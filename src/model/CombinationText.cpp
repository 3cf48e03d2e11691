#include "model/CombinationText.h"

#include "model/KeyCodeMapper.h"
#include "model/Letters.h"
#include "model/OneLine.h"
#include "platform/LocalizedError.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;

struct Modifier {
    std::uint64_t flag;
    std::string_view symbol;
    std::string_view word;
};

/// In the order in which they are shown.
constexpr std::array<Modifier, 4> modifiers{{
    {control, "⌃", "Ctrl"},
    {option, "⌥", "Alt"},
    {shift, "⇧", "Shift"},
    {command, "⌘", "Super"},
}};

struct OtherWord {
    std::uint64_t flag;
    std::string_view word; ///< in small letters
};

constexpr std::array<OtherWord, 12> otherWords{{
    {control, "control"},
    {control, "ctl"},
    {option, "option"},
    {option, "opt"},
    {option, "mod1"},
    {command, "command"},
    {command, "cmd"},
    {command, "meta"},
    {command, "win"},
    {command, "windows"},
    {command, "logo"},
    {command, "mod4"},
}};

struct OtherName {
    std::uint16_t keyCode;
    std::string_view name;
};

/// Names of keys in letters, beside those that people are shown. The first of each key is the one
/// that is written.
constexpr std::array<OtherName, 13> otherNames{{
    {123, "Left"},
    {124, "Right"},
    {125, "Down"},
    {126, "Up"},
    {36, "Enter"},
    {53, "Esc"},
    {51, "Backspace"},
    {114, "Insert"},
    {115, "Home"},
    {116, "PageUp"},
    {117, "ForwardDelete"},
    {119, "End"},
    {121, "PageDown"},
}};

bool isLetterOrDigit(char letter) {
    return (smallLetter(letter) >= 'a' && smallLetter(letter) <= 'z') ||
           (letter >= '0' && letter <= '9');
}

std::string_view withoutBlanks(std::string_view text) {
    const auto begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::uint64_t flagOf(std::string_view word) {
    for (const auto& modifier : modifiers) {
        if (isSameButForCapitals(word, modifier.word)) {
            return modifier.flag;
        }
    }
    const auto* const other = std::ranges::find_if(otherWords, [word](const OtherWord& entry) {
        return isSameButForCapitals(word, entry.word);
    });
    return other == otherWords.end() ? 0 : other->flag;
}

/// Reads one combination from left to right.
class CombinationReader {
public:
    explicit CombinationReader(std::string_view text) : text_(text), rest_(text) {}

    platform::KeyCombination read() {
        platform::KeyCombination combination;
        while (const auto flag = takeModifier()) {
            combination.modifierFlags |= *flag;
        }
        combination.keyCode = key();
        return combination;
    }

private:
    /// Absent where the key begins.
    std::optional<std::uint64_t> takeModifier() {
        skipBlanks();
        for (const auto& modifier : modifiers) {
            if (rest_.starts_with(modifier.symbol)) {
                rest_.remove_prefix(modifier.symbol.size());
                skipBlanks();
                if (rest_.size() > 1 && rest_.front() == '+') {
                    rest_.remove_prefix(1);
                }
                return modifier.flag;
            }
        }
        const auto end = rest_.find('+');
        if (end == std::string_view::npos || end == 0) {
            return std::nullopt;
        }
        const auto word = withoutBlanks(rest_.substr(0, end));
        const auto flag = flagOf(word);
        if (flag == 0) {
            fail("「" + oneLine(word) + "」という修飾キーはありません",
                 "there is no modifier \"" + oneLine(word) + '"');
        }
        rest_.remove_prefix(end + 1);
        return flag;
    }

    std::uint16_t key() const {
        const auto name = withoutBlanks(rest_);
        if (name.empty() || flagOf(name) != 0) {
            fail("キーがありません", "the key is missing");
        }
        if (const auto code = KeyCodeMapper::keyCode(name)) {
            return *code;
        }
        const auto* const other = std::ranges::find_if(otherNames, [name](const OtherName& entry) {
            return isSameButForCapitals(name, entry.name);
        });
        if (other == otherNames.end()) {
            fail("「" + oneLine(name) + "」というキーはありません",
                 "there is no key \"" + oneLine(name) + '"');
        }
        return other->keyCode;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    [[noreturn]] void fail(const std::string& japanese, const std::string& english) const {
        const auto read = text_.substr(0, text_.size() - rest_.size());
        const auto isFirstByte = [](char byte) {
            return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
        };
        const auto place = std::to_string(std::ranges::count_if(read, isFirstByte) + 1);
        throw platform::LocalizedError(
            "「" + oneLine(text_) + "」の" + place + "文字目: " + japanese,
            '"' + oneLine(text_) + "\", character " + place + ": " + english);
    }

    std::string_view text_;
    std::string_view rest_;
};

} // namespace

std::string CombinationText::symbols(const platform::KeyCombination& combination) {
    std::string text;
    for (const auto& modifier : modifiers) {
        if ((combination.modifierFlags & modifier.flag) != 0) {
            text += modifier.symbol;
        }
    }
    return text + KeyCodeMapper::keyName(combination.keyCode);
}

std::string CombinationText::words(const platform::KeyCombination& combination) {
    std::string text;
    for (const auto& modifier : modifiers) {
        if ((combination.modifierFlags & modifier.flag) != 0) {
            text.append(modifier.word).append("+");
        }
    }
    const auto* const other =
        std::ranges::find(otherNames, combination.keyCode, &OtherName::keyCode);
    const auto name = KeyCodeMapper::keyName(combination.keyCode);
    if (std::ranges::all_of(name, isLetterOrDigit) &&
        KeyCodeMapper::keyCode(name) == combination.keyCode) {
        return text + name;
    }
    return other == otherNames.end() ? text + KeyCodeMapper::codeName(combination.keyCode)
                                     : text.append(other->name);
}

platform::KeyCombination CombinationText::parse(std::string_view text) {
    return CombinationReader(text).read();
}

} // namespace hollowfernpike
