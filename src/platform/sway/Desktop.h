#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::sway {

/// A session of sway, 1.7 or later: the compositor that WAYLAND_DISPLAY names answers on sway's
/// socket. Null otherwise.
std::unique_ptr<platform::FoundDesktop> findDesktop();

} // namespace hollowfernpike::sway
