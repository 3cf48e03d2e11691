#pragma once

#include <string>

namespace hollowfernpike {

enum class JsonType { null, boolean, number, string, array, object };

/// A value as it stands in a document. `text` is a string's content, otherwise the source text of
/// a number or literal; empty for arrays and objects.
struct JsonValue {
    JsonType type = JsonType::null;
    std::string text;
};

} // namespace hollowfernpike
