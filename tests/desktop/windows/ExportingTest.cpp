#include "desktop/editor/ScreenReader.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStoryTest.h"
#include "support/Files.h"
#include "support/Privileges.h"
#include "support/SmallDisk.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

/// Two shortcuts are there, and places where no list can be written or another file lies.
class ExportingTest : public TwoShortcutsTest {
protected:
    const fs::path folder = story.desktop.home() / "folder";
    const fs::path file = folder / "list.json";
    Agreement agreement{story};
    ScreenReader reader{story.desktop.bus().address()};

    void SetUp() override {
        ASSERT_TRUE(bindChildrenToFileModes());
        fs::create_directory(folder);
        TwoShortcutsTest::SetUp();
    }

    /// Exports onto a file that exists, and confirms that it is to be replaced.
    void exportOver(const fs::path& path) {
        const auto panel = story.clickExport();
        story.acceptPath(panel, path);
        story.comes(story.titles.alert);
        reader.find("alert message",
                    "「" + path.filename().string() + "」はすでに存在します。置き換えますか？");
        story.keyboard.strike({"RTRN"});
        story.goes(panel);
    }

    void expectReported() {
        const auto alert = story.comes(story.titles.alert);
        reader.find("alert message", "エクスポートに失敗しました。");
        story.strikeAndLeave(alert, "RTRN");
        story.managementComes();
        EXPECT_EQ(story.list(), before);
        EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}}));
        expectBothAreLive();
    }
};

TEST_F(ExportingTest, ReplacesAFileThatExistsWholeAndLeavesNothingElse) {
    std::ofstream(file) << std::string(100'000, 'x');
    exportOver(file);
    story.managementComes();
    EXPECT_TRUE(waitUntil([&] { return contentsOf(file).front() == '['; }));
    EXPECT_EQ(contents(file), before);
    EXPECT_THAT(namesIn(folder), ElementsAre("list.json"));
    EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}}));
}

TEST_F(ExportingTest, IntoAFolderThatMayNotBeWrittenIsReportedAndWritesNothing) {
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    story.enterPath(story.clickExport(), file);
    expectReported();
    EXPECT_TRUE(fs::is_empty(folder));
}

/// Both folders that are written to hold files of the user that are named like ours.
class FoldersOfOthersTest : public ExportingTest {
protected:
    const std::vector<std::string> theirs{".hollowfernpike-backup", ".hollowfernpike-abc123"};

    void SetUp() override {
        for (const auto& name : theirs) {
            for (const auto& place : {folder, story.shortcutsFile().parent_path()}) {
                writeFile(place / name, "theirs");
                fs::last_write_time(place / name,
                                    fs::file_time_type::clock::now() - std::chrono::days{3});
            }
        }
        ExportingTest::SetUp();
    }
};

TEST_F(FoldersOfOthersTest, KeepTheirOldFilesWhenTheListIsSavedAndExported) {
    story.enterPath(story.clickExport(), file);
    story.managementComes();
    EXPECT_TRUE(waitUntil([&] { return fs::exists(file); }));
    EXPECT_EQ(contents(file), before);
    EXPECT_THAT(namesIn(folder), UnorderedElementsAre(theirs[0], theirs[1], "list.json"));
    EXPECT_THAT(namesIn(story.shortcutsFile().parent_path()),
                UnorderedElementsAre(theirs[0], theirs[1], "shortcuts.json"));
}

/// There is a disk with room for one page, which is taken.
class FullDiskTest : public ExportingTest {
protected:
    const SmallDisk disk{story.desktop.home() / "disk", 4096};
    const fs::path fileOnDisk = disk.folder() / "list.json";
};

TEST_F(FullDiskTest, IsReportedAndKeepsTheFileThatWasToBeReplaced) {
    std::ofstream(fileOnDisk) << "old";
    exportOver(fileOnDisk);
    expectReported();
    EXPECT_EQ(contentsOf(fileOnDisk), "old");
    EXPECT_THAT(namesIn(disk.folder()), ElementsAre("list.json"));
}

TEST_F(FullDiskTest, IsReportedAndGetsNoNewFile) {
    std::ofstream(disk.folder() / "filling") << "old";
    story.enterPath(story.clickExport(), fileOnDisk);
    expectReported();
    EXPECT_THAT(namesIn(disk.folder()), ElementsAre("filling"));
}

} // namespace
} // namespace hollowfernpike
