#pragma once

#include "support/KeyInjector.h"

#include <string_view>

namespace hollowfernpike::show {

/// Types a text key by key, as on a keyboard with the layout of the United States: letters, digits,
/// blanks, line feeds and the usual marks. Throws std::invalid_argument for anything else.
void type(test::KeyInjector& keyboard, std::string_view text);

} // namespace hollowfernpike::show
