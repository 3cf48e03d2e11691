#pragma once

#include <string>
#include <string_view>

#include <rapidjson/document.h>

namespace hollowfernpike::sway {

/// A JSON text as a document; null if it is none.
rapidjson::Document parse(std::string_view text);

/// The member of that name; null if `value` is no object or has none.
const rapidjson::Value& member(const rapidjson::Value& value, const char* name);

/// The member as a text; empty if it is something else.
std::string textMember(const rapidjson::Value& value, const char* name);

} // namespace hollowfernpike::sway
