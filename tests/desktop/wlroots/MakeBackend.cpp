#include "contracts/StoryBackend.h"
#include "desktop/wayland/WaylandStory.h"
#include "platform/wayland/UnknownDesktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::test {

std::unique_ptr<Backend> makeBackend() {
    auto story = makeStory();
    const auto environment = story->session().environment();
    return std::make_unique<StoryBackend>(
        std::move(story), environment, "offscreen", [](const platform::DesktopHost& host) {
            auto connection = wayland::Connection::open();
            return wayland::findUnknownDesktop(connection)->open(host);
        });
}

} // namespace hollowfernpike::test
