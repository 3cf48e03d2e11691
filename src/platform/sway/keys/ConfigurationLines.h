#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::sway {

/// The words of a line of sway's configuration; what stands in quotes is one word. Never empty.
using ConfigurationLine = std::vector<std::string>;

/// The lines of a configuration (sway(5)) without remarks: lines that end in a backslash are one
/// with the next, and so are lines that begin a block whose brace stands alone on the next.
std::vector<ConfigurationLine> configurationLines(std::string_view text);

} // namespace hollowfernpike::sway
