#pragma once

#include "desktop/windows/WindowStory.h"
#include "support/WriteFile.h"

namespace hollowfernpike::test {

/// Has the utility speak English from its next start, as if that had been chosen before.
inline void beginInEnglish(WindowStory& story) {
    writeFile(story.desktop.home() / ".config/app.hollowfernpike.Hollowfernpike.conf",
              "[General]\nAppLanguage=en\n");
    story.titles = englishTitles;
}

} // namespace hollowfernpike::test
