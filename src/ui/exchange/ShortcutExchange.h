#pragma once

#include "ui/exchange/ExchangePresentation.h"

/// Saving the whole list of shortcuts to a file of the user's choice, and replacing it by such a
/// file's. Failures are told in alerts that stand alone and block, however the rest is shown; none
/// of them changes the list. Dismissing a panel or a question ends it without a word. Main thread
/// only.
namespace hollowfernpike::ShortcutExchange {

/// Writes the list as it is now, whatever becomes of it while the panel is open.
void exportShortcuts(const ExchangePresentation& presentation);

/// Reads the file before it asks whether to replace the list.
void importShortcuts(const ExchangePresentation& presentation);

} // namespace hollowfernpike::ShortcutExchange
