#pragma once

#include <QString>

#include <cstdint>

namespace hollowfernpike {

/// A combination as people say it, such as "Control + Super + Page Down", for those who do not know
/// the symbols of its short form or a key that it has no name for. In the current language. Main
/// thread only.
QString combinationInWords(std::uint16_t keyCode, std::uint64_t modifierFlags);

/// What the four symbols stand for.
QString modifiersInWords();

} // namespace hollowfernpike
