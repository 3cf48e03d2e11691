#include "contracts/MakeTextComparison.h"

#include "platform/freedesktop/TextComparison.h"

namespace hollowfernpike::test {

std::unique_ptr<platform::TextComparison> makeTextComparison() {
    return std::make_unique<freedesktop::TextComparison>();
}

} // namespace hollowfernpike::test
