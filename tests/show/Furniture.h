#pragma once

#include "show/Edition.h"
#include "support/PrivateDesktop.h"

namespace hollowfernpike::show {

/// What the ground of a furnished desktop looks like: nothing else there has this colour.
std::uint32_t groundColor(const Edition& edition);

/// Gives a desktop colours, fonts, icons and frames that go with the edition, as people set them in
/// the settings of their desktop, and a few applications that everybody knows. Returns what the
/// utility needs in its environment to find them.
test::Environment furnish(const test::PrivateDesktop& desktop, const Edition& edition);

/// Has the utility speak the edition's language from its start.
void setLanguage(const test::PrivateDesktop& desktop, const Edition& edition);

} // namespace hollowfernpike::show
