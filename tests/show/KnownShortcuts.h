#pragma once

#include "show/Studio.h"

namespace hollowfernpike::show {

inline constexpr auto longName = "Quarterly Reports of the Northern Branch Office";

/// Three shortcuts as people have them.
inline void bindKnown(Studio& studio) {
    studio.bind("Terminal", {17, test::control | test::option});
    studio.bind("Text Editor", {14, test::option | test::command});
    studio.bind("Browser", {11, test::command});
}

} // namespace hollowfernpike::show
