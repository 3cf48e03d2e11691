#include "contracts/StoryBackend.h"
#include "desktop/kde/KWinStory.h"
#include "platform/kde/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <fcntl.h>

// The leak sanitizer calls this. At its end the toolkit does not destroy the objects of the
// compositor that it uses.
//
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libwayland-client\nleak:libQt6WaylandClient\n";
}

namespace hollowfernpike::test {

namespace {

/// The connection of a program that KWin lets see windows, which a test program is not.
std::unique_ptr<platform::FoundDesktop> findDesktopBy(const LentSocket& socket) {
    const int own = ::fcntl(socket.get().get(), F_DUPFD, 0);
    ::setenv("WAYLAND_SOCKET", std::to_string(own).c_str(), 1);
    auto connection = wayland::Connection::open();
    return kde::findDesktop(connection);
}

} // namespace

std::unique_ptr<Backend> makeBackend() {
    auto story = std::make_unique<KWinStory>();
    const auto environment = story->desktop.environment();
    const auto socket = std::make_shared<LentSocket>(story->desktop.lendSocket());
    return std::make_unique<StoryBackend>(
        std::move(story), environment, "wayland",
        [socket](const platform::DesktopHost& host) { return findDesktopBy(*socket)->open(host); });
}

} // namespace hollowfernpike::test
