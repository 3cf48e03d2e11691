#pragma once

#include "platform/EventTap.h"
#include "platform/FatalError.h"

#include <cstdint>
#include <limits>
#include <string>

namespace hollowfernpike::platform {

/// The virtual key code of a key going down. One that is no key code at all is a fatal error: a
/// truncated one would stand for another key.
inline std::uint16_t checkedKeyCode(const KeyEvent& event) {
    if (event.keyCode < 0 || event.keyCode > std::numeric_limits<std::uint16_t>::max()) {
        fatalError("key code " + std::to_string(event.keyCode) + " is outside 0 to 65535");
    }
    return static_cast<std::uint16_t>(event.keyCode);
}

} // namespace hollowfernpike::platform
