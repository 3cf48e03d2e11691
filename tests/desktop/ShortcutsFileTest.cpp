#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const std::string complaint = "ショートカット読み込みエラー: ";

class ShortcutsFileTest : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(story.shortcutsFile().parent_path());
    }

    void write(const std::string& text) { std::ofstream(story.shortcutsFile()) << text; }

    std::string content() {
        std::ifstream file(story.shortcutsFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// Starts the utility, sees that keys pass, and ends it. It connects to the display for its own
    /// windows, then for the keys, then for the windows of others; at this third connection it
    /// holds all the keys that it is going to hold.
    void runsWithAnEmptyList() {
        story.launchUtility();
        ASSERT_TRUE(waitUntil([&] { return story.pager.clients(story.utility().pid()) >= 3; }));
        EXPECT_TRUE(story.passes(story.open("Front"), Combination{37, control | option}.keys()));
        EXPECT_FALSE(story.utility().hasEnded());
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
    }

    void complainsOnce() {
        const auto& output = story.utility().output();
        EXPECT_EQ(output.find(complaint), 0) << output;
        EXPECT_GT(output.find('\n'), complaint.size());
        EXPECT_EQ(output.find('\n'), output.size() - 1) << output;
    }

    Story story;
};

TEST_F(ShortcutsFileTest, MissingMeansAnEmptyListAndNoWord) {
    runsWithAnEmptyList();
    EXPECT_EQ(story.utility().output(), "");
    EXPECT_FALSE(std::filesystem::exists(story.shortcutsFile()));
}

TEST_F(ShortcutsFileTest, BrokenMeansAnEmptyListAndStaysAsItIs) {
    const std::string text = R"([{"id":"00000000-0000-4000-8000-000000000001","keyCode":37,)";
    write(text);
    runsWithAnEmptyList();
    complainsOnce();
    EXPECT_EQ(content(), text);
}

TEST_F(ShortcutsFileTest, OneBadRecordMeansAnEmptyListAndStaysAsItIs) {
    const std::string text =
        R"([{"id":"00000000-0000-4000-8000-000000000001","keyCode":37,"modifierFlags":786432,)"
        R"("appPath":"/a","appName":"a","appBundleIdentifier":"a"},)"
        R"({"id":"00000000-0000-4000-8000-000000000002","keyCode":70000,"modifierFlags":786432,)"
        R"("appPath":"/a","appName":"a","appBundleIdentifier":"a"}])";
    write(text);
    runsWithAnEmptyList();
    complainsOnce();
    EXPECT_EQ(content(), text);
}

TEST_F(ShortcutsFileTest, UnreadableMeansAnEmptyListAndStaysAsItIs) {
    std::filesystem::create_directory(story.shortcutsFile());
    runsWithAnEmptyList();
    complainsOnce();
    EXPECT_TRUE(std::filesystem::is_directory(story.shortcutsFile()));
}

} // namespace
} // namespace hollowfernpike
