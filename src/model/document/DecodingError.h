#pragma once

#include "model/document/RecordKeys.h"
#include "platform/LocalizedError.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hollowfernpike {

enum class JsonType { null, boolean, number, string, array, object };

/// A value as it stands in a document. `text` is a string's content, otherwise the source text of
/// a number or literal; empty for arrays and objects.
struct JsonValue {
    JsonType type = JsonType::null;
    std::string text;
};

/// A text in both languages of the interface.
struct Wording {
    std::string_view japanese;
    std::string_view english;
};

/// A place in a document. Line and column count from 1; columns are characters.
struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// A place in the list: the element, counted from 1, and the member of its object.
struct FieldPosition {
    std::size_t element = 1;
    RecordKey key = RecordKey::id;
};

/// Why a document is not a list of shortcuts. The descriptions say where, and quote the wrong value
/// on one line, cut after 60 characters.
class DecodingError : public platform::LocalizedError {
public:
    using LocalizedError::LocalizedError;

    /// The document is not JSON at all.
    static DecodingError syntax(TextPosition position, const Wording& reason);
    static DecodingError notAList(const JsonValue& found);
    static DecodingError notARecord(std::size_t element, const JsonValue& found);
    static DecodingError missing(FieldPosition field);
    static DecodingError wrongType(FieldPosition field, JsonType expected, const JsonValue& found);
    static DecodingError notAUUID(FieldPosition field, const JsonValue& found);
    static DecodingError notAnInteger(FieldPosition field, const JsonValue& found);
    static DecodingError outOfRange(FieldPosition field, const JsonValue& found,
                                    std::uint64_t maximum);
};

} // namespace hollowfernpike
