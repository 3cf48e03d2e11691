#include "model/document/ShortcutEncoder.h"

#include "model/OneLine.h"
#include "model/document/RecordKeys.h"
#include "model/json/Utf8.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace hollowfernpike {

namespace {

/// What stands between the values of a document.
struct Punctuation {
    std::string_view emptyList;
    std::string_view listStart;
    std::string_view elementSeparator;
    std::string_view listEnd;
    std::string_view recordStart;
    std::string_view memberSeparator;
    std::string_view recordEnd;
    std::string_view colon;
    std::array<RecordKey, recordKeyNames.size()> keys;
};

constexpr Punctuation compact{
    .emptyList = "[]",
    .listStart = "[",
    .elementSeparator = ",",
    .listEnd = "]",
    .recordStart = "{",
    .memberSeparator = ",",
    .recordEnd = "}",
    .colon = ":",
    .keys = {RecordKey::id, RecordKey::keyCode, RecordKey::modifierFlags, RecordKey::appPath,
             RecordKey::appName, RecordKey::appBundleIdentifier},
};

constexpr Punctuation pretty{
    .emptyList = "[\n\n]",
    .listStart = "[\n  ",
    .elementSeparator = ",\n  ",
    .listEnd = "\n]",
    .recordStart = "{\n    ",
    .memberSeparator = ",\n    ",
    .recordEnd = "\n  }",
    .colon = " : ",
    .keys = {RecordKey::appBundleIdentifier, RecordKey::appName, RecordKey::appPath, RecordKey::id,
             RecordKey::keyCode, RecordKey::modifierFlags},
};

EncodingError notUtf8(std::size_t element, RecordKey key, std::string_view text) {
    const auto number = std::to_string(element);
    const std::string member{name(key)};
    const auto value = excerpt(text);
    return {"一覧の" + number + "番目の要素（1から数えて）のキー \"" + member +
                "\": UTF-8ではない文字列は書き込めません: \"" + value + '"',
            "Element " + number + " of the list (counted from 1), key \"" + member +
                "\": cannot write a text that is not UTF-8: \"" + value + '"'};
}

/// For each byte the letter behind the backslash: 'u' for the long form, 0 if it is not escaped.
constexpr auto escapes = [] {
    std::array<char, 256> letters{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        letters.at(control) = 'u';
    }
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\n'] = 'n';
    letters['\r'] = 'r';
    letters['\t'] = 't';
    letters['"'] = '"';
    letters['\\'] = '\\';
    letters['/'] = '/';
    return letters;
}();

void appendEscape(std::string& document, std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    document += '\\';
    document += escapes.at(byte);
    if (escapes.at(byte) == 'u') {
        document += "00";
        document += digits[byte >> 4];
        document += digits[byte & 0x0F];
    }
}

/// Appends `text` as a JSON string (RFC 8259, section 7) in quotes. Quotes, backslashes, slashes
/// and control characters are escaped, everything else is copied; `text` must be valid UTF-8.
void appendJsonString(std::string& document, std::string_view text) {
    document += '"';
    std::size_t written = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto byte = static_cast<std::uint8_t>(text[index]);
        if (escapes.at(byte) != 0) {
            document += text.substr(written, index - written);
            appendEscape(document, byte);
            written = index + 1;
        }
    }
    document += text.substr(written);
    document += '"';
}

class Encoder {
public:
    explicit Encoder(const Punctuation& punctuation) : punctuation_(punctuation) {}

    std::string document(std::span<const AppShortcut> shortcuts) {
        if (shortcuts.empty()) {
            return std::string{punctuation_.emptyList};
        }
        auto separator = punctuation_.listStart;
        for (const auto& shortcut : shortcuts) {
            document_ += separator;
            ++element_;
            appendRecord(shortcut);
            separator = punctuation_.elementSeparator;
        }
        document_ += punctuation_.listEnd;
        return std::move(document_);
    }

private:
    void appendRecord(const AppShortcut& shortcut) {
        auto separator = punctuation_.recordStart;
        for (const auto key : punctuation_.keys) {
            document_ += separator;
            appendJsonString(document_, name(key));
            document_ += punctuation_.colon;
            appendValue(shortcut, key);
            separator = punctuation_.memberSeparator;
        }
        document_ += punctuation_.recordEnd;
    }

    void appendValue(const AppShortcut& shortcut, RecordKey key) {
        switch (key) {
        case RecordKey::id:
            return appendText(key, shortcut.id.text());
        case RecordKey::keyCode:
            document_ += std::to_string(shortcut.keyCode);
            return;
        case RecordKey::modifierFlags:
            document_ += std::to_string(shortcut.modifierFlags);
            return;
        case RecordKey::appPath:
            return appendText(key, shortcut.appPath);
        case RecordKey::appName:
            return appendText(key, shortcut.appName);
        case RecordKey::appBundleIdentifier:
            return appendText(key, shortcut.appBundleIdentifier);
        }
    }

    void appendText(RecordKey key, std::string_view text) {
        if (firstInvalidUtf8(text) != std::string_view::npos) {
            throw notUtf8(element_, key, text);
        }
        appendJsonString(document_, text);
    }

    const Punctuation& punctuation_;
    std::string document_;
    std::size_t element_ = 0;
};

} // namespace

std::string encodeShortcuts(std::span<const AppShortcut> shortcuts, DocumentLayout layout) {
    return Encoder{layout == DocumentLayout::compact ? compact : pretty}.document(shortcuts);
}

} // namespace hollowfernpike
