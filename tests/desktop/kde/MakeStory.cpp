#include "desktop/kde/KWinStory.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<KWinStory>(settingsOfStories(layout));
}

std::unique_ptr<StackingStory> makeStackingStory() {
    return std::make_unique<KWinStory>();
}

} // namespace hollowfernpike::test
