#pragma once

#include <cstddef>
#include <string_view>

namespace hollowfernpike {

/// Length in bytes of the well-formed UTF-8 sequence (Unicode, table 3-7) that `text` begins with:
/// 1 to 4, or 0 if there is none. Overlong forms and surrogates are not well-formed.
std::size_t utf8SequenceLength(std::string_view text);

/// Position of the first byte that belongs to no well-formed sequence; `npos` if there is none.
std::size_t firstInvalidUtf8(std::string_view text);

} // namespace hollowfernpike
