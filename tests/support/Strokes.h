#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// Keys by their names in the keyboard map, to be held in this order.
using Stroke = std::vector<std::string>;

/// What to strike, one after the other, to type a text on a keyboard with the layout of the United
/// States: letters, digits, blanks, line feeds and the usual marks. Throws std::invalid_argument
/// for anything else.
std::vector<Stroke> strokesFor(std::string_view text);

} // namespace hollowfernpike::test
