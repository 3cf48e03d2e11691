#pragma once

#include "platform/RunLoop.h"
#include "platform/sway/ipc/IpcSocket.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace hollowfernpike::sway {

/// Events of sway, on a connection of their own. Main thread only.
class IpcEvents {
public:
    /// Both may destroy this object. `lost` is the last call.
    struct Listener {
        std::function<void(const IpcMessage&)> event;
        std::function<void()> lost;
    };

    /// Subscribes to the named events, a JSON list. `runLoop` outlives this object.
    IpcEvents(const std::string& path, std::string_view names, platform::RunLoop& runLoop,
              Listener listener);

    /// Whether the subscription stands.
    bool isOpen() const { return watch_ != nullptr; }

private:
    bool isSubscribed(std::string_view names);
    void onReadable();

    IpcSocket socket_;
    Listener listener_;
    std::unique_ptr<platform::Subscription> watch_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace hollowfernpike::sway
