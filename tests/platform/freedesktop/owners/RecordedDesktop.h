#pragma once

#include "platform/freedesktop/entries/EntryIndex.h"

namespace hollowfernpike::test {

/// The entries of a desktop with many kinds of applications, as their files have them, without the
/// programs being there.
freedesktop::EntryIndex recordedDesktop();

} // namespace hollowfernpike::test
