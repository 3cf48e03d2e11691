#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::kde {

/// A session of KDE Plasma on Wayland (KWin 5.27 or later). Null otherwise.
std::unique_ptr<platform::FoundDesktop> findDesktop();

} // namespace hollowfernpike::kde
