#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::wayland {

/// A session on a Wayland compositor that we know no way to get keys from: windows and status item
/// work, shortcuts do not. Null if the environment names no compositor that answers.
std::unique_ptr<platform::FoundDesktop> findUnknownDesktop();

} // namespace hollowfernpike::wayland
