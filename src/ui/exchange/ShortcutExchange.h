#pragma once

#include "ui/exchange/ExchangePresentation.h"

/// Saves the whole list of shortcuts to a file of the user's choice, or replaces it by the list in
/// such a file. Failures are shown in alerts that stand alone and block, whatever the presentation;
/// they leave the list unchanged. Dismissing a panel or a question ends the exchange silently. Main
/// thread only.
namespace hollowfernpike::ShortcutExchange {

/// Writes the list as it is at the call, even if it changes while the panel is open.
void exportShortcuts(const ExchangePresentation& presentation);

/// Reads the file before it asks whether to replace the list.
void importShortcuts(const ExchangePresentation& presentation);

} // namespace hollowfernpike::ShortcutExchange
