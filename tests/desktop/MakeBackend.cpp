#include "contracts/StoryBackend.h"
#include "desktop/Story.h"
#include "platform/x11/Desktop.h"

namespace hollowfernpike::test {

std::unique_ptr<Backend> makeBackend() {
    auto story = std::make_unique<Story>();
    const auto environment = story->desktop.environment();
    return std::make_unique<StoryBackend>(
        std::move(story), environment, "xcb",
        [](const platform::DesktopHost& host) { return x11::findDesktop()->open(host); });
}

} // namespace hollowfernpike::test
