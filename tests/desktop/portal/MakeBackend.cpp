#include "contracts/StoryBackend.h"
#include "desktop/sway/SwayStory.h"
#include "platform/portal/Desktop.h"
#include "platform/portal/FakePortal.h"
#include "platform/wayland/connection/Connection.h"
#include "support/WriteFile.h"

#include <map>
#include <utility>

namespace hollowfernpike::test {

namespace {

/// A session on sway that says of itself that its portal binds keys.
std::unique_ptr<SwayStory> storyWithPortal() {
    auto story = std::make_unique<SwayStory>();
    writeFile(story->session().dataHome() / "xdg-desktop-portal/portals/fake.portal",
              "[portal]\nInterfaces=org.freedesktop.impl.portal.GlobalShortcuts\n"
              "UseIn=sway\n");
    return story;
}

std::unique_ptr<platform::Desktop> openWithPortal(const platform::DesktopHost& host) {
    auto connection = wayland::Connection::open();
    return portal::findDesktop(connection)->open(host);
}

/// The windows are the compositor's. That asks no portal for keys, so this does it: what no
/// shortcut of the portal has, the compositor gets.
class PortalBackend final : public StoryBackend {
public:
    PortalBackend(std::unique_ptr<SwayStory> story, const Environment& environment)
        : StoryBackend(std::move(story), environment, "offscreen", openWithPortal),
          portal_(QString::fromStdString(environment.at("DBUS_SESSION_BUS_ADDRESS").value())) {}

    bool reachesFront(const platform::KeyCombination& combination) override {
        static const std::map<std::pair<std::uint16_t, std::uint64_t>, QString> triggers{
            {{37, 0}, "l"},
            {{37, control | option}, "CTRL+ALT+l"},
            {{38, control | option}, "CTRL+ALT+j"}};
        return !portal_.press(triggers.at({combination.keyCode, combination.modifierFlags})) &&
               StoryBackend::reachesFront(combination);
    }

private:
    FakePortal portal_;
};

} // namespace

std::unique_ptr<Backend> makeBackend() {
    auto story = storyWithPortal();
    const auto environment = story->session().environment();
    return std::make_unique<PortalBackend>(std::move(story), environment);
}

} // namespace hollowfernpike::test
