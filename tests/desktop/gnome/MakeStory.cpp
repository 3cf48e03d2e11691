#include "desktop/gnome/GnomeStory.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<GnomeStory>(GnomeSettings{.layout = layout});
}

std::unique_ptr<StackingStory> makeStackingStory() {
    return std::make_unique<GnomeStory>();
}

} // namespace hollowfernpike::test
