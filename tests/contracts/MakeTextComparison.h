#pragma once

#include "platform/TextComparison.h"

#include <memory>

namespace hollowfernpike::test {

/// That of the desktops that a test program is for.
std::unique_ptr<platform::TextComparison> makeTextComparison();

} // namespace hollowfernpike::test
