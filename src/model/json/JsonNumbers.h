#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace hollowfernpike {

/// The document with a zero of the same length and sign in place of every number that is longer
/// than two digits, those in strings excepted. It is as much, or as little, a JSON document (RFC
/// 8259) as before, and all else is where it was.
std::string withZerosForNumbers(std::string_view document);

enum class IntegerFault { notAnInteger, outOfRange };

/// The value of a JSON number (RFC 8259, section 6; the caller has checked its form) as an integer
/// from 0 to `maximum`. Judged by value: 100, 100.0 and 1e2 are the same. Exact: nothing is
/// rounded.
std::variant<std::uint64_t, IntegerFault> integerValue(std::string_view number,
                                                       std::uint64_t maximum);

} // namespace hollowfernpike
