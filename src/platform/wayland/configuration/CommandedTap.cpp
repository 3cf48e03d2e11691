#include "platform/wayland/configuration/CommandedTap.h"

#include "platform/freedesktop/Logging.h"

namespace hollowfernpike::wayland {

void CommandedTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    count_ = combinations.size();
    if (isLive()) {
        start();
    }
}

void CommandedTap::start() {
    qCDebug(freedesktop::keysLog, "presses of %zu combinations may come by commands", count_);
}

} // namespace hollowfernpike::wayland
