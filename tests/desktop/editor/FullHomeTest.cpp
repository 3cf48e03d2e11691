#include "desktop/editor/EditorStory.h"

#include "support/Files.h"
#include "support/SmallDisk.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class FullHomeTest : public testing::Test {
protected:
    EditorStory story;
    Application& quartz = story.open("Quartz");
};

TEST_F(FullHomeTest, AChangeThatIsNotSavedIsToldOf) {
    constexpr std::size_t page = 4096;
    const SmallDisk disk{story.shortcutsFile().parent_path(), 2 * page};
    story.start();
    story.openManagement();
    story.add(quartz, bound);
    const auto before = contentsOf(story.shortcutsFile());
    putFile(disk.folder() / "other", std::string(page, 'x'));
    story.openManagement();
    story.strikeAndLeave(story.clickDelete(0), "RTRN");
    EXPECT_TRUE(story.isFree(bound)) << "it holds for the program that runs";
    EXPECT_EQ(contentsOf(story.shortcutsFile()), before) << story.utilityTells();
    story.reader.find("alert message", "変更を保存できませんでした。");
}

} // namespace
} // namespace hollowfernpike
