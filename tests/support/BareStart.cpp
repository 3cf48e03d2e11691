#include "support/BareEnvironment.h"

namespace {

// Before anything else: some tests set variables while their objects are made.
[[gnu::constructor(101)]] void leaveTheDesktopBehind() {
    hollowfernpike::test::enterBareEnvironment();
}

} // namespace
