#include "desktop/gnome/GnomeStory.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<GnomeStory>(GnomeSettings{.layout = layout});
}

} // namespace hollowfernpike::test
