#include "desktop/sway/SwayStory.h"
#include "desktop/wayland/Quiet.h"
#include "support/WaitUntil.h"

#include <memory>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class QuietOnSwayTest : public Quiet {
protected:
    QuietOnSwayTest() : Quiet(std::make_unique<SwayStory>()) {}
};

TEST_F(QuietOnSwayTest, WindowsThatComeAndGoDoNotWakeIt) {
    const auto before = wakeUps();
    auto& other = story.open("Other");
    story.pager.close(other.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return other.copies().empty(); }));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(wakeUps(), before);
}

} // namespace
} // namespace hollowfernpike
