#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hollowfernpike {

/// The text made fit for one line of a log or a message: line breaks and other control characters
/// become escapes such as \n, \u0007 or \u2028; bytes that are not UTF-8 become ones such as \xff.
std::string oneLine(std::string_view text);

/// The same for the first `characters` code points, followed by "..." if some were left out.
std::string excerpt(std::string_view text, std::size_t characters = 60);

/// The text with an escape such as \u202e for each character that changes the direction of what
/// follows: they could make "gpj.exe" read "exe.jpg". For names by which people decide.
std::string withoutDirections(std::string_view text);

} // namespace hollowfernpike
