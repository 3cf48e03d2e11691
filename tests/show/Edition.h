#pragma once

#include "desktop/windows/WindowUser.h"

#include <string>
#include <vector>

namespace hollowfernpike::show {

/// One of the ways in which the utility can look.
struct Edition {
    bool isEnglish = false;
    bool isDark = false;
    int scale = 1;            ///< pixels of the screen for one of the utility's
    int points = usualPoints; ///< of the desktop's font

    static constexpr int usualPoints = 10;

    /// Such as "ja-dark-2x", or "ja-dark-2x-24pt" where the font is not the usual one.
    std::string name() const;

    const test::WindowTitles& titles() const;
};

/// In all languages and palettes, at all scales and with the usual font.
const std::vector<Edition>& allEditions();

/// One of them, or the same with a font of 8 or 24 points. Throws std::invalid_argument if there is
/// no edition of this name.
Edition editionNamed(const std::string& name);

} // namespace hollowfernpike::show
