#include "platform/x11/startup/StartupMessage.h"

#include <algorithm>

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

} // namespace

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

} // namespace hollowfernpike::x11
