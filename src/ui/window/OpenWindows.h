#pragma once

#include "ui/editor/EditorDraft.h"

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike {

/// Which of our windows are open, to be opened again by a later run of the program.
struct OpenWindows {
    bool hasMainWindow = false;
    std::vector<EditorDraft> editors;

    /// Letters and digits, for an environment variable.
    std::string text() const;

    /// No windows if the text is not of text().
    static OpenWindows parse(std::string_view text);
};

} // namespace hollowfernpike
