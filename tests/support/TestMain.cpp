#include "support/BareEnvironment.h"
#include "support/CleanUp.h"

#include <gmock/gmock.h>

namespace {

// Before anything else: some tests set variables while their objects are made.
[[gnu::constructor(101)]] void leaveTheDesktopBehind() {
    hollowfernpike::test::enterBareEnvironment();
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new hollowfernpike::test::CleanUp);
    return RUN_ALL_TESTS();
}
