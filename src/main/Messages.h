#pragma once

#include "platform/LocalizedError.h"

namespace hollowfernpike {

/// Tells whoever started the program, in both languages, on standard error.
void tell(const platform::LocalizedError& message);

} // namespace hollowfernpike
