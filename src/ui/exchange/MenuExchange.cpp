#include "ui/exchange/MenuExchange.h"

#include "ui/exchange/ShortcutExchange.h"

namespace hollowfernpike::MenuExchange {

void exportShortcuts() {
    ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
}

void importShortcuts() {
    ShortcutExchange::importShortcuts(ExchangePresentation::modal());
}

} // namespace hollowfernpike::MenuExchange
