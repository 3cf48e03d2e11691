#include "contracts/StoryBackend.h"
#include "desktop/gnome/GnomeStory.h"
#include "platform/gnome/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <stdexcept>

namespace hollowfernpike::test {

namespace {

/// The same one for all tests, with no application open: the shell takes a second to start.
std::shared_ptr<GnomeStory> emptyStory() {
    static const auto story = std::make_shared<GnomeStory>();
    story->endApplications();
    if (!waitUntil([&] { return story->pager.windows().empty(); })) {
        throw std::runtime_error("windows of the test before do not go");
    }
    return story;
}

/// As the program, whom the extension of the shell serves by its name on the bus.
std::unique_ptr<platform::Desktop> openOnGnome(const platform::DesktopHost& host) {
    auto bus = host.bus->connection();
    bus.registerService("app.hollowfernpike.Hollowfernpike");
    auto connection = wayland::Connection::open();
    return gnome::findDesktop(connection)->open(host);
}

} // namespace

std::unique_ptr<Backend> makeBackend() {
    auto story = emptyStory();
    const auto environment = story->desktop.environment();
    return std::make_unique<StoryBackend>(std::move(story), environment, "offscreen", openOnGnome);
}

} // namespace hollowfernpike::test
