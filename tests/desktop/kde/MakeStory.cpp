#include "desktop/kde/KWinStory.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<KWinStory>(settingsOfStories(layout));
}

} // namespace hollowfernpike::test
