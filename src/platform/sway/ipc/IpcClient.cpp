#include "platform/sway/ipc/IpcClient.h"

#include "platform/freedesktop/Logging.h"

#include <utility>

namespace hollowfernpike::sway {

namespace {

/// A press asks more than once; all of it must not add up.
constexpr std::chrono::seconds respite{2};

void logFailure(const IpcMessage& answer) {
    if (answer.payload.find("\"success\": false") != std::string::npos) {
        qCDebug(freedesktop::keysLog, "sway refused: %s", answer.payload.c_str());
    }
}

} // namespace

std::optional<std::string> IpcClient::ask(IpcKind kind, std::string_view payload) {
    const bool wasConnected = socket_ && socket_->isOpen();
    const auto begin = Clock::now();
    if (begin < silentUntil_) {
        return std::nullopt;
    }
    auto answer = exchange(kind, payload);
    const bool isSilent = !answer && Clock::now() >= begin + IpcSocket::patience;
    if (!answer && wasConnected && !isSilent) {
        answer = exchange(kind, payload); // sway may have ended the old connection
    }
    silentUntil_ = isSilent ? Clock::now() + respite : Clock::time_point{};
    return answer ? std::optional(std::move(answer->payload)) : std::nullopt;
}

bool IpcClient::post(std::string_view commands) {
    if (!connect() || !socket_->send(IpcKind::runCommand, commands)) {
        return false;
    }
    ++unread_;
    return true;
}

bool IpcClient::connect() {
    if (!socket_ || !socket_->isOpen()) {
        socket_.emplace(path_);
        unread_ = 0;
    }
    return socket_->isOpen();
}

std::optional<IpcMessage> IpcClient::exchange(IpcKind kind, std::string_view payload) {
    if (!connect() || !socket_->send(kind, payload)) {
        return std::nullopt;
    }
    for (; unread_ > 0; --unread_) {
        const auto answer = socket_->receive();
        if (!answer) {
            return std::nullopt;
        }
        logFailure(*answer);
    }
    auto answer = socket_->receive();
    return answer && answer->kind == kind ? std::move(answer) : std::nullopt;
}

} // namespace hollowfernpike::sway
