#pragma once

#include <string_view>

namespace hollowfernpike {

/// Under this name the desktop keeps our settings, and knows our program.
inline constexpr std::string_view ownDomain = "app.hollowfernpike.Hollowfernpike";

/// Under these names it kept our settings before.
inline constexpr std::string_view previousDomains[] = {"com.local.Hollowfernpike"};

} // namespace hollowfernpike
