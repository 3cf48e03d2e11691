#pragma once

#include "desktop/windows/WindowUser.h"

#include <string>
#include <vector>

namespace hollowfernpike::show {

/// One of the ways in which the utility can look.
struct Edition {
    bool isEnglish = false;
    bool isDark = false;
    int scale = 1; ///< pixels of the screen for one of the utility's

    /// Such as "ja-dark-2x".
    std::string name() const;

    const test::WindowTitles& titles() const;
};

/// In all languages and palettes and at all scales.
const std::vector<Edition>& allEditions();

/// Throws std::invalid_argument if there is no edition of this name.
Edition editionNamed(const std::string& name);

} // namespace hollowfernpike::show
