#include "ui/MenuExchange.h"

namespace hollowfernpike::MenuExchange {

void exportShortcuts() {}

void importShortcuts() {}

} // namespace hollowfernpike::MenuExchange
