#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike {

/// Appends `text` as a JSON string (RFC 8259, section 7) in quotes. Quotes, backslashes, slashes
/// and control characters are escaped, everything else is copied; `text` must be valid UTF-8.
void appendJsonString(std::string& document, std::string_view text);

} // namespace hollowfernpike
