#include "platform/x11/startup/LaunchFeedback.h"

#include "platform/x11/startup/StartupMessage.h"

#include <array>
#include <chrono>

#include <unistd.h>

namespace hollowfernpike::x11 {

namespace {

std::string machineName() {
    std::array<char, 256> name{};
    ::gethostname(name.data(), name.size() - 1);
    return name.data();
}

/// Tells this process apart from any that had its number before.
std::string processName() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::to_string(::getpid()) + '-' + std::to_string(now.count());
}

} // namespace

LaunchFeedback::LaunchFeedback(Windows& windows, const UserTime& userTime)
    : windows_(windows), userTime_(userTime),
      prefix_("hollowfernpike-" + processName() + '-' + machineName() + '-') {}

LaunchFeedback::~LaunchFeedback() {
    if (sender_ != XCB_NONE) {
        auto* const server = windows_.reader()->connection().get();
        xcb_destroy_window(server, sender_);
        xcb_flush(server);
    }
}

std::string LaunchFeedback::begin(const platform::StartingApplication& application) {
    const auto* const windows = windows_.reader();
    if (windows == nullptr || windows->connection().isLost()) {
        return {};
    }
    auto identifier = newIdentifier();
    if (application.announces) {
        broadcast(
            *windows,
            startupMessage("new", {{"ID", identifier},
                                   {"NAME", application.name},
                                   {"SCREEN", std::to_string(windows->connection().screenNumber())},
                                   {"BIN", application.program},
                                   {"WMCLASS", application.windowClass},
                                   {"APPLICATION_ID", application.entryPath}}));
    }
    return identifier;
}

void LaunchFeedback::end(const std::string& identifier) {
    const auto* const windows = windows_.reader();
    if (windows != nullptr && identifier.starts_with(prefix_)) {
        broadcast(*windows, startupMessage("remove", {{"ID", identifier}}));
    }
}

void LaunchFeedback::broadcast(const WindowReader& windows, const std::string& message) {
    const auto& connection = windows.connection();
    if (sender_ == XCB_NONE) {
        sender_ = xcb_generate_id(connection.get());
        xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, sender_, connection.root(), -1,
                          -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
    }
    broadcastStartupMessage(connection, windows.atoms(), sender_, message);
}

// Without a key press there is no time to tell, and a made-up one would decide about the focus.
std::string LaunchFeedback::newIdentifier() {
    auto identifier = prefix_ + std::to_string(++count_);
    if (userTime_.time() != XCB_CURRENT_TIME) {
        identifier += "_TIME" + std::to_string(userTime_.time());
    }
    return identifier;
}

} // namespace hollowfernpike::x11
