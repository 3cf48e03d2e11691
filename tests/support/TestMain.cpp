#include "support/BareEnvironment.h"

#include <gmock/gmock.h>

namespace {

// Before anything else: some tests set variables while their objects are made.
[[gnu::constructor(101)]] void leaveTheDesktopBehind() {
    hollowfernpike::test::enterBareEnvironment();
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
