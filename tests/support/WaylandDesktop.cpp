#include "support/WaylandDesktop.h"

#include "support/SessionUser.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <optional>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

Environment environmentIn(const SessionFolders& folders, const Environment& session) {
    auto environment = folders.environment();
    for (const char* foreign : {"DISPLAY", "XAUTHORITY", "SWAYSOCK", "WAYLAND_DISPLAY"}) {
        environment[foreign] = std::nullopt;
    }
    environment["XDG_SESSION_TYPE"] = "wayland";
    return changed(environment, session);
}

} // namespace

WaylandDesktop::WaylandDesktop(Home home, BusOwner user, const Environment& session, int attempts)
    : folders_(std::move(home)), user_(user), attempts_(attempts),
      environment_(environmentIn(folders_, session)), bus_(environment_, user) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    environment_["FONTCONFIG_FILE"] = lend(HFP_TEST_FONTS);
}

fs::path WaylandDesktop::lend(const fs::path& file) const {
    return user_ == BusOwner::sessionUser ? lendToSessionUser(file, ground()) : file;
}

std::unique_ptr<ChildProcess> WaylandDesktop::start(const std::vector<std::string>& commandLine,
                                                    const Environment& changes) const {
    giveFolders();
    return std::make_unique<ChildProcess>(
        user_ == BusOwner::sessionUser ? asSessionUser(commandLine) : commandLine,
        changed(environment_, changes));
}

void WaylandDesktop::giveFolders() const {
    if (user_ == BusOwner::sessionUser) {
        folders_.giveToSessionUser();
    }
}

void WaylandDesktop::nameSocket(const fs::path& socket) {
    waylandSocket_ = socket;
    setVariable("WAYLAND_DISPLAY", socket.filename());
}

bool WaylandDesktop::tryToRunCompositor() {
    giveToSessionUser(ground());
    endCompositor();
    compositor_ = startCompositor();
    const auto isReadyNow = [this] {
        try {
            return isReady();
        } catch (const std::runtime_error&) {
            return false;
        }
    };
    bool hasEnded = false;
    const auto isDecided = [&] { return (hasEnded = compositor_->hasEnded()) || isReadyNow(); };
    return waitUntil(isDecided) && !hasEnded;
}

void WaylandDesktop::runCompositor() {
    for (int attempt = 0; attempt < attempts_; ++attempt) {
        if (tryToRunCompositor()) {
            return;
        }
    }
    const auto told = compositor_->output() + compositor_->errors();
    endCompositor();
    throw std::runtime_error("the compositor did not start: " + told);
}

void WaylandDesktop::restart() {
    compositor_->signal(SIGKILL);
    compositor_->wait();
    runCompositor();
}

fs::path waylandSocketIn(const fs::path& directory) {
    for (const auto& entry : fs::directory_iterator(directory)) {
        if (entry.is_socket() && entry.path().filename().string().starts_with("wayland-")) {
            return entry.path();
        }
    }
    return {};
}

} // namespace hollowfernpike::test
