#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class TrustTest : public testing::Test {
protected:
    Story story;

    /// Starts the utility with a list of one shortcut. It is not live without trust, so this waits
    /// for the error message instead.
    void startUtility(const Environment& changes) {
        startUtility(changes, story.install("Target"));
    }
    void startUtility(const Environment& changes, const Application& target) {
        story.bind(bound, target);
        story.writeShortcuts();
        story.launchUtility(changes);
        ASSERT_TRUE(waitUntil([&] { return !story.utility().errors().empty(); }));
    }

    std::vector<xcb_window_t> permissionWindows() {
        auto windows = story.pager.stacking();
        std::erase_if(windows, [&](xcb_window_t window) {
            return story.pager.titleOf(window) != "Hollowfernpike";
        });
        return windows;
    }

    /// Waits for so many windows, and expects never to see more than one.
    bool hasPermissionWindows(std::size_t count) {
        return waitUntil([&] {
            const auto present = permissionWindows().size();
            EXPECT_LE(present, 1U);
            return present == count;
        });
    }

    void endsOnRequest() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
    }
};

TEST_F(TrustTest, AnUntrustedClientAsksAndGoesLiveByItselfOnceItIsTrusted) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    const auto file = story.authority("authority", "untrusted");
    startUtility({{"XAUTHORITY", file.string()}}, target);
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_FALSE(story.utility().hasEnded());

    std::filesystem::rename(story.authority("better", "trusted"), file);
    ASSERT_TRUE(story.areLive());
    const auto key = story.grabOf(bound).key;
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(target.starts(), 1) << "it was there to be brought forward";
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(front.downs(key), 1) << "the press before it was trusted";
    endsOnRequest();
}

TEST_F(TrustTest, AWindowAsksAgainWhenItWasClosedAndGoesWhenThePermissionComes) {
    const auto file = story.authority("authority", "untrusted");
    startUtility({{"XAUTHORITY", file.string()}});
    for (int question = 0; question < 2; ++question) {
        ASSERT_TRUE(hasPermissionWindows(1));
        story.pager.close(permissionWindows().at(0));
        ASSERT_TRUE(hasPermissionWindows(0));
    }
    ASSERT_TRUE(hasPermissionWindows(1));

    std::filesystem::rename(story.authority("better", "trusted"), file);
    ASSERT_TRUE(story.areLive());
    EXPECT_TRUE(hasPermissionWindows(0));
    endsOnRequest();
    const std::string told = "The X server does not let this program see the keys";
    const auto& errors = story.utility().errors();
    EXPECT_NE(errors.find(told), std::string::npos);
    EXPECT_EQ(errors.find(told), errors.rfind(told)) << "told once";
}

TEST_F(TrustTest, AnUntrustedClientEndsOnRequest) {
    startUtility({{"XAUTHORITY", story.authority("authority", "untrusted").string()}});
    endsOnRequest();
}

class NoDisplayTest : public TrustTest,
                      public testing::WithParamInterface<std::optional<std::string>> {};

TEST_P(NoDisplayTest, ItSaysWhatIsMissingAndEnds) {
    startUtility({{"DISPLAY", GetParam()}});
    EXPECT_EQ(story.utility().wait(), 1);
    EXPECT_NE(story.utility().errors().find("no display can be reached"), std::string::npos);
    EXPECT_NE(story.utility().errors().find("ディスプレイに接続できない"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Displays, NoDisplayTest,
                         testing::Values(std::nullopt, "", ":65000", "nowhere:0"));

} // namespace
} // namespace hollowfernpike
