#include "platform/x11/LaunchFeedback.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace hollowfernpike::x11 {

namespace {

constexpr std::size_t longestValue = 512;
constexpr std::size_t pieceSize = 20;

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Cuts between characters of UTF-8, and before a zero byte, which would end the whole message.
std::string_view bounded(std::string_view value) {
    value = value.substr(0, value.find('\0'));
    if (value.size() <= longestValue) {
        return value;
    }
    auto end = longestValue;
    while (end > 0 && continuesCharacter(value[end])) {
        --end;
    }
    return value.substr(0, end);
}

std::string quotedValue(std::string_view value) {
    std::string result = "\"";
    for (const char letter : bounded(value)) {
        if (letter == '"' || letter == '\\') {
            result += '\\';
        }
        result += letter;
    }
    return result += '"';
}

/// A message of the start-up notification protocol (freedesktop.org, version 0.2): a prefix such as
/// "new" and its keys in order. Keys with an empty value are left out; values are quoted, and cut
/// at 512 bytes.
std::string startupMessage(std::string_view prefix,
                           const std::vector<std::pair<std::string_view, std::string>>& keys) {
    std::string message{prefix};
    message += ':';
    for (const auto& [key, value] : keys) {
        if (!value.empty()) {
            message += ' ';
            message += key;
            message += '=';
            message += quotedValue(value);
        }
    }
    return message;
}

/// Sends the message to all clients that listen on the root, in pieces of 20 bytes. `sender` in
/// each piece tells concurrent messages apart. Flushes, does not wait.
void broadcastStartupMessage(const Connection& connection, const Atoms& atoms, xcb_window_t sender,
                             const std::string& message) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = atoms.startupInfoBegin;
    // One byte more than the text has: the zero at its end is what ends the message.
    for (std::size_t start = 0; start < message.size() + 1; start += pieceSize) {
        std::ranges::fill(event.data.data8, std::uint8_t{0});
        const auto piece = std::string_view{message}.substr(start, pieceSize);
        std::ranges::copy(piece, event.data.data8);
        xcb_send_event(connection.get(), 0, connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = atoms.startupInfo;
    }
    xcb_flush(connection.get());
}

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

LaunchFeedback::LaunchFeedback(Windows& windows, UserTime& userTime)
    : windows_(windows), userTime_(userTime),
      prefix_("hollowfernpike-" + processName() + '-' + machineName() + '-') {}

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
    if (!sender_) {
        sender_.emplace(connection);
    }
    broadcastStartupMessage(connection, windows.atoms(), sender_->get(), message);
}

// Before the first key press the time is left out: window managers decide about the focus by it, so
// it must not be made up.
std::string LaunchFeedback::newIdentifier() {
    auto identifier = prefix_ + std::to_string(++count_);
    if (userTime_.time() != XCB_CURRENT_TIME) {
        identifier += "_TIME" + std::to_string(userTime_.time());
    }
    return identifier;
}

// A command is not told the time of its press, so the present has to do.
void LaunchFeedback::notePress(const platform::KeyCombination& combination,
                               const std::string& /*startupIdentifier*/) {
    if (auto* const reader = windows_.reader()) {
        userTime_.record(reader->events().serverTime(), combination);
    }
}

} // namespace hollowfernpike::x11
