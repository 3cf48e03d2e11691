#pragma once

#include "desktop/windows/WindowStory.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// Nobody has added anything yet, nor started the utility.
class WindowStoryTest : public testing::Test {
protected:
    const Combination first{37, control | option};
    const Combination second{38, command};

    WindowStory story;
};

/// Two shortcuts are there, and the window with their cards is in front.
class TwoShortcutsTest : public WindowStoryTest {
protected:
    Application& quartz = story.open("Quartz");
    Application& feldspar = story.open("Feldspar");
    nlohmann::json before;

    void SetUp() override {
        story.start();
        story.openManagement();
        story.add(quartz, first);
        story.add(feldspar, second);
        before = story.list();
        story.openManagement();
    }

    void expectBothAreLive() {
        EXPECT_TRUE(story.brings(quartz, story.front, first));
        EXPECT_TRUE(story.brings(feldspar, story.front, second));
    }
};

} // namespace hollowfernpike::test
