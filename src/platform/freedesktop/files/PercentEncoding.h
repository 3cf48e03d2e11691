#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// `text` with ASCII letters, digits and the bytes in `kept` as they are, every other byte as "%"
/// and its two hexadecimal digits, in lower case.
std::string percentEncoded(std::string_view text, std::string_view kept);

} // namespace hollowfernpike::freedesktop
