#include "model/document/DecodingError.h"

#include "model/OneLine.h"

#include <string>

namespace hollowfernpike {

namespace {

Wording typeName(JsonType type) {
    switch (type) {
    case JsonType::null:
        return {"null", "null"};
    case JsonType::boolean:
        return {"真偽値", "a boolean"};
    case JsonType::number:
        return {"数値", "a number"};
    case JsonType::string:
        return {"文字列", "a string"};
    case JsonType::array:
        return {"配列", "an array"};
    case JsonType::object:
        return {"オブジェクト", "an object"};
    }
    return {};
}

std::string quoted(const JsonValue& value) {
    const auto text = excerpt(value.text);
    return value.type == JsonType::string ? '"' + text + '"' : text;
}

/// The type, followed by the value where that tells more.
std::string withValue(std::string_view type, const JsonValue& value) {
    std::string text{type};
    return value.text.empty() || value.text == type ? text : text + ' ' + quoted(value);
}

std::string japaneseFound(const JsonValue& value) {
    return withValue(typeName(value.type).japanese, value);
}

std::string englishFound(const JsonValue& value) {
    return withValue(typeName(value.type).english, value);
}

DecodingError inElement(std::size_t element, const std::string& japanese,
                        const std::string& english) {
    const auto number = std::to_string(element);
    return {"一覧の" + number + "番目の要素（1から数えて）" + japanese,
            "Element " + number + " of the list (counted from 1)" + english};
}

DecodingError inField(FieldPosition field, const std::string& japanese,
                      const std::string& english) {
    const std::string key{name(field.key)};
    return inElement(field.element, "のキー \"" + key + "\": " + japanese,
                     ", key \"" + key + "\": " + english);
}

} // namespace

DecodingError DecodingError::syntax(TextPosition position, const Wording& reason) {
    const auto line = std::to_string(position.line);
    const auto column = std::to_string(position.column);
    return {"JSONとして正しくありません（" + line + "行目" + column +
                "文字目）: " + std::string{reason.japanese},
            "Not valid JSON (line " + line + ", column " + column +
                "): " + std::string{reason.english}};
}

DecodingError DecodingError::notAList(const JsonValue& found) {
    return {"文書の最上位が配列（ショートカットの一覧）ではなく、" + japaneseFound(found) + " です",
            "The top level of the document is not an array (the list of shortcuts) but " +
                englishFound(found)};
}

DecodingError DecodingError::notARecord(std::size_t element, const JsonValue& found) {
    return inElement(element, "がオブジェクトではなく、" + japaneseFound(found) + " です",
                     " is not an object but " + englishFound(found));
}

DecodingError DecodingError::missing(FieldPosition field) {
    return inField(field, "キーがありません", "the key is missing");
}

DecodingError DecodingError::wrongType(FieldPosition field, JsonType expected,
                                       const JsonValue& found) {
    const auto wanted = typeName(expected);
    return inField(field,
                   std::string{wanted.japanese} + "ではなく、" + japaneseFound(found) + " です",
                   "not " + std::string{wanted.english} + " but " + englishFound(found));
}

DecodingError DecodingError::notAUUID(FieldPosition field, const JsonValue& found) {
    return inField(field, quoted(found) + " はUUIDではありません",
                   quoted(found) + " is not a UUID");
}

DecodingError DecodingError::notAnInteger(FieldPosition field, const JsonValue& found) {
    return inField(field, quoted(found) + " は整数ではありません",
                   quoted(found) + " is not an integer");
}

DecodingError DecodingError::outOfRange(FieldPosition field, const JsonValue& found,
                                        std::uint64_t maximum) {
    const auto last = std::to_string(maximum);
    return inField(field, quoted(found) + " は範囲外です（0〜" + last + "）",
                   quoted(found) + " is out of range (0 to " + last + ')');
}

} // namespace hollowfernpike
