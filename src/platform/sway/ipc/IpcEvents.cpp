#include "platform/sway/ipc/IpcEvents.h"

#include <utility>

namespace hollowfernpike::sway {

IpcEvents::IpcEvents(const std::string& path, std::string_view names, platform::RunLoop& runLoop,
                     Listener listener)
    : socket_(path), listener_(std::move(listener)) {
    if (socket_.send(IpcKind::subscribe, names) && socket_.receive()) {
        watch_ = runLoop.watchReadable(socket_.descriptor(), [this] { onReadable(); });
    }
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
