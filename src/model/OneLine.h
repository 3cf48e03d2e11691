#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hollowfernpike {

/// The text as it may stand in one line of a log or a message: line breaks and other control
/// characters become escapes such as \n, \u0007 or \u2028, bytes that are not UTF-8 such as \xff.
std::string oneLine(std::string_view text);

/// The same of the first `characters` code points, with "..." behind if some were left out.
std::string excerpt(std::string_view text, std::size_t characters = 60);

} // namespace hollowfernpike
