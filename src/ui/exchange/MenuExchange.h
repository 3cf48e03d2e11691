#pragma once

/// Export and import as the status menu offers them: in dialogs that stand alone. Each returns when
/// its last dialog is answered. Main thread only.
namespace hollowfernpike::MenuExchange {

void exportShortcuts();
void importShortcuts();

} // namespace hollowfernpike::MenuExchange
