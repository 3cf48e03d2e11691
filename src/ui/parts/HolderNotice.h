#pragma once

#include "model/AppShortcut.h"

#include <QString>

namespace hollowfernpike {

/// What people should know of the combination of a shortcut if somebody besides us holds it, in the
/// current language; empty if nobody does. Main thread only.
QString holderNotice(const AppShortcut& shortcut);

} // namespace hollowfernpike
