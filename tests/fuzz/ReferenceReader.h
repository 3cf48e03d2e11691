#pragma once

#include "model/AppShortcut.h"

#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// What another JSON reader makes of a document.
struct Reference {
    enum class Verdict {
        refused,
        accepted,
        undecided, ///< a number is one that this reader would have to round, or cannot hold
    };

    Verdict verdict = Verdict::refused;
    std::vector<AppShortcut> shortcuts = {}; ///< if accepted
};

/// Reads a list of shortcuts without any code of ours but the UUID's.
Reference readByReference(std::string_view document);

} // namespace hollowfernpike::test
