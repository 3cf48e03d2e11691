#include "platform/sway/ipc/IpcEvents.h"

#include "platform/sway/ipc/Json.h"

#include <utility>

namespace hollowfernpike::sway {

IpcEvents::IpcEvents(const std::string& path, std::string_view names, platform::RunLoop& runLoop,
                     Listener listener)
    : socket_(path), listener_(std::move(listener)) {
    if (isSubscribed(names)) {
        watch_ = runLoop.watchReadable(socket_.descriptor(), [this] { onReadable(); });
    }
}

bool IpcEvents::isSubscribed(std::string_view names) {
    const auto answer =
        socket_.send(IpcKind::subscribe, names) ? socket_.receive() : std::optional<IpcMessage>{};
    return answer && answer->kind == IpcKind::subscribe &&
           member(parse(answer->payload), "success").IsTrue();
}

void IpcEvents::onReadable() {
    const std::weak_ptr<bool> alive = alive_;
    const auto listener = listener_;
    while (const auto message = socket_.takeArrived()) {
        listener.event(*message);
        if (alive.expired()) {
            return;
        }
    }
    if (!socket_.isOpen()) {
        watch_.reset();
        listener.lost();
    }
}

} // namespace hollowfernpike::sway
