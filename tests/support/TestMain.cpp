#include "support/CleanUp.h"

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new hollowfernpike::test::CleanUp);
    return RUN_ALL_TESTS();
}
