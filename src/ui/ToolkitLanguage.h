#pragma once

namespace hollowfernpike {

/// Gives the toolkit's own texts, as in file panels and the menus of text fields, the interface's
/// language. For whoever is about to show such; windows that are open follow. Main thread only.
void speakInterfaceLanguage();

} // namespace hollowfernpike
