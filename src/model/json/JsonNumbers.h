#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace hollowfernpike {

/// The document with every number longer than two characters, not counting the sign, replaced by a
/// zero of the same length and sign; numbers in strings stay. The result is valid JSON (RFC 8259)
/// if and only if the document is, and everything else keeps its position.
std::string withZerosForNumbers(std::string_view document);

enum class IntegerFault { notAnInteger, outOfRange };

/// The value of a JSON number (RFC 8259, section 6; the caller has checked its form) as an integer
/// from 0 to `maximum`. Judged by value: 100, 100.0 and 1e2 are the same. Exact: nothing is
/// rounded.
std::variant<std::uint64_t, IntegerFault> integerValue(std::string_view number,
                                                       std::uint64_t maximum);

} // namespace hollowfernpike
