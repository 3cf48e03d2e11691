#include "desktop/wlroots/WlrootsSession.h"

namespace hollowfernpike::test {

std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<WlrootsStory>(WlrootsCompositor::sway, layout);
}

} // namespace hollowfernpike::test
