#include "desktop/RecordedTraffic.h"
#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// What the utility sees of the keyboard, and what it lets others know of it.
class QuietTest : public EditorStoryTest {
protected:
    const std::string_view editing = story.titles.editing;
    RecordedTraffic delivered = RecordedTraffic::ofKeyEvents(story.desktop.display());

    /// Keys that a recorder neither records nor obeys without a modifier.
    static std::vector<std::string> bareKeys() {
        std::vector<std::string> names;
        for (const auto& key : namedKeys()) {
            if (key.name != "ESC") {
                names.emplace_back(key.name);
            }
        }
        return names;
    }

    /// Strikes these keys while another application has the focus, and waits until it has got all
    /// of them. Returns how many events the utility has got meanwhile.
    std::size_t deliveredWhileTypingElsewhere() {
        EXPECT_TRUE(story.switchTo(quartz));
        const auto other = quartz.copies().at(0);
        const auto toUtility = [this] { return delivered.of(story.utility().pid()); };
        const auto isUpToDate = [&] { return delivered.of(other) >= quartz.keys().size(); };
        EXPECT_TRUE(waitUntil(isUpToDate));
        const auto settled = delivered.of(other);
        const auto already = toUtility();
        for (const auto& name : bareKeys()) {
            story.keyboard.strike({name});
        }
        const auto expected = settled + 2 * bareKeys().size();
        EXPECT_TRUE(waitUntil([&] { return delivered.of(other) >= expected; }));
        return toUtility() - already;
    }

    /// The files that a program may write unasked, with their sizes and times.
    using Files = std::map<std::filesystem::path,
                           std::tuple<std::uintmax_t, std::filesystem::file_time_type>>;

    Files files() const {
        Files found;
        for (const auto& folder :
             {story.shortcutsFile().parent_path(), story.desktop.home() / ".config",
              story.desktop.home() / ".cache", story.desktop.home() / ".local" / "state"}) {
            std::error_code missing;
            for (const auto& entry :
                 std::filesystem::recursive_directory_iterator(folder, missing)) {
                if (entry.is_regular_file()) {
                    found[entry.path()] = {entry.file_size(), entry.last_write_time()};
                }
            }
        }
        return found;
    }
};

TEST_F(QuietTest, KeysThatNobodyBindsDoNotReachIt) {
    EXPECT_EQ(deliveredWhileTypingElsewhere(), 0);
    story.openManagement();
    story.showsRecorder(story.clickEdit(0));
    EXPECT_EQ(deliveredWhileTypingElsewhere(), 0) << "with an editor open";
}

TEST_F(QuietTest, KeysReachItOnlyWhileItRecordsInFront) {
    story.clickEdit(0);
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, third));
    EXPECT_TRUE(story.listensNoMore());
    story.clickRecord(editing);
    ASSERT_TRUE(story.switchTo(quartz));
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_EQ(deliveredWhileTypingElsewhere(), 0);
}

TEST_F(QuietTest, WhatItRecordsIsWrittenNowhere) {
    const auto known = files();
    ASSERT_FALSE(known.empty());
    story.clickEdit(0);
    for (const auto& end : {std::vector<std::string>{"LCTL", "ESC"}, third.keys()}) {
        story.clickRecord(editing);
        story.strike(bareLetter);
        EXPECT_TRUE(story.recorderShows(editing, text::includeAModifier));
        story.keyboard.strike(end);
        story.part(editing, "push button", "記録");
    }
    EXPECT_TRUE(story.recorderShows(editing, shown(third)));
    EXPECT_EQ(files(), known);
    story.utility().signal(SIGTERM); // then nothing is left in its buffers
    EXPECT_EQ(story.utility().wait(), 0);
    EXPECT_EQ(story.utility().output(), "");
    EXPECT_EQ(story.utility().errors(), "");
}

} // namespace
} // namespace hollowfernpike
