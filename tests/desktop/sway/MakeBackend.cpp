#include "contracts/StoryBackend.h"
#include "desktop/sway/SwayStory.h"
#include "platform/sway/Desktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::test {

std::unique_ptr<Backend> makeBackend() {
    auto story = std::make_unique<SwayStory>();
    const auto environment = story->desktop.environment();
    return std::make_unique<StoryBackend>(std::move(story), environment, "offscreen",
                                          [](const platform::DesktopHost& host) {
                                              auto connection = wayland::Connection::open();
                                              return sway::findDesktop(connection)->open(host);
                                          });
}

} // namespace hollowfernpike::test
