#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

namespace hollowfernpike {

enum class IntegerFault { notAnInteger, outOfRange };

/// The value of a JSON number (RFC 8259, section 6; the caller has checked its form) as an integer
/// from 0 to `maximum`. Judged by value: 100, 100.0 and 1e2 are the same. Exact: nothing is
/// rounded.
std::variant<std::uint64_t, IntegerFault> integerValue(std::string_view number,
                                                       std::uint64_t maximum);

} // namespace hollowfernpike
