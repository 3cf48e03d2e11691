#pragma once

#include "platform/EventTap.h"
#include "platform/FatalError.h"

#include <cstdint>
#include <limits>
#include <string>

namespace hollowfernpike::platform {

/// The virtual key code of a key going down. A code outside 0 to 65535 is a fatal error, because it
/// would stand for another key once truncated.
inline std::uint16_t checkedKeyCode(const KeyEvent& event) {
    if (event.keyCode < 0 || event.keyCode > std::numeric_limits<std::uint16_t>::max()) {
        fatalError("key code " + std::to_string(event.keyCode) + " is outside 0 to 65535");
    }
    return static_cast<std::uint16_t>(event.keyCode);
}

} // namespace hollowfernpike::platform
