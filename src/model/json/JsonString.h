#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike {

/// Appends a JSON string (RFC 8259, section 7) with the quotes. Quotes, backslashes, slashes and
/// control characters are escaped, everything else stands as it is; `text` is valid UTF-8.
void appendJsonString(std::string& document, std::string_view text);

} // namespace hollowfernpike
