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
    qCDebug(freedesktop::keysLog, "to be pressed by commands: bound %zu combinations", count_);
}

} // namespace hollowfernpike::wayland
