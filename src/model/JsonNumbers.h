#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike {

/// The document with a zero of the same length and sign in place of every number that is longer
/// than two digits, those in strings excepted. It is as much, or as little, a JSON document (RFC
/// 8259) as before, and all else is where it was.
std::string withZerosForNumbers(std::string_view document);

} // namespace hollowfernpike
