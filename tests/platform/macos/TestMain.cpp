#include "platform/macos/fakes/FakeMac.h"
#include "support/CleanUp.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

/// Each test finds the fakes as they are at the beginning, and leaves nothing with them.
class Balance final : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo& /*test*/) override { FakeMac::reset(); }

    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        auto& mac = FakeMac::shared();
        EXPECT_EQ(mac.owed, 0) << "objects that were not released, or too often";
        mac.opening.clear();
        EXPECT_EQ(mac.alive, 0) << "objects that are still there";
        EXPECT_EQ(mac.taps.size(), 0);
        mac.owed = 0;
        mac.alive = 0;
    }
};

} // namespace

} // namespace hollowfernpike::test

int main(int argc, char** argv) {
    using namespace hollowfernpike::test;
    testing::InitGoogleMock(&argc, argv);
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    listeners.Append(new Balance);
    listeners.Append(new CleanUp);
    return RUN_ALL_TESTS();
}
