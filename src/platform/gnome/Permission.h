#pragma once

#include "platform/Desktop.h"
#include "platform/freedesktop/bus/SessionBus.h"

namespace hollowfernpike::gnome {

/// Whether one of our two extensions is installed where the shell looks for it when it starts: one
/// is for GNOME Shell 43 and 44, the other for later ones.
bool isExtensionInstalled();

/// Why the shell does not run the extension.
struct MissingExtension {
    platform::Distrust problem;
    bool mayComeInThisSession = true;
};

/// As the shell says itself: asks it and waits for the answers. The remedy has the shell enable the
/// extension, and uses the bus later.
MissingExtension missingExtension(const freedesktop::SessionBus& bus);

} // namespace hollowfernpike::gnome
