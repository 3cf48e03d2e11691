#include "desktop/sway/SwayStory.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<SwayStory>(std::string{}, layout);
}

} // namespace hollowfernpike::test
