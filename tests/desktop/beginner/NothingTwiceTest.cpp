#include "desktop/RecordedTraffic.h"
#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "show/Camera.h"
#include "support/FolderLog.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// A change of the list, or of the language, makes no work that was done before.
class NothingTwiceTest : public testing::Test {
protected:
    static constexpr std::size_t many = 60;

    EditorStory story;
    StatusMenu menu{story.desktop};

    static std::string nameOf(std::size_t number) { return "app" + std::to_string(number); }

    static Combination combinationOf(std::size_t number) {
        return {namedKeys()[number].keyCode, control | option | shift};
    }

    /// A list of shortcuts, each for an application of its own.
    void makeList() {
        for (std::size_t number = 0; number < many; ++number) {
            const auto name = nameOf(number);
            const auto entry = story.desktop.applications() / (name + ".desktop");
            writeFile(entry, "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n");
            story.bind(combinationOf(number), {.path = entry, .name = name, .identifier = name});
        }
        story.writeShortcuts();
    }

    /// Whether nothing happens in that folder for a while.
    static bool isQuiet(FolderLog& log) {
        const auto before = log.events();
        return !waitUntil([&] { return log.events() != before; }, 500ms);
    }

    void import(const nlohmann::json& list) {
        const auto file = story.desktop.home() / "list.json";
        writeFile(file, list.dump());
        story.openManagement();
        story.enterPath(story.clickImport(), file);
        story.comes(story.titles.alert);
        story.keyboard.strike({"RTRN"});
        ASSERT_TRUE(story.listBecomes(list));
        story.managementComes();
    }
};

TEST_F(NothingTwiceTest, AnImportSavesOnceAndLeavesAloneWhatStays) {
    makeList();
    const auto all = story.list();
    auto fewer = all;
    fewer.erase(fewer.size() - 1);
    writeFile(story.shortcutsFile(), "[]");
    story.start();
    auto grabs = RecordedTraffic::ofRequests(story.desktop.display(), XCB_GRAB_KEY);
    FolderLog saves(story.shortcutsFile().parent_path());
    FolderLog reads(story.desktop.applications());

    import(all);
    ASSERT_TRUE(story.areLive());
    EXPECT_EQ(saves.arrivals("shortcuts.json"), 1);
    for (std::size_t number = 0; number < many; ++number) {
        const auto entry = nameOf(number) + ".desktop";
        ASSERT_TRUE(waitUntil([&] { return reads.openings(entry) > 0; })) << entry;
    }
    const auto grabbed = grabs.of(story.utility().pid());
    EXPECT_GE(grabbed, many);

    import(fewer);
    ASSERT_TRUE(story.isFree(combinationOf(many - 1)));
    ASSERT_TRUE(waitUntil([&] { return isQuiet(saves) && isQuiet(reads); }));
    EXPECT_EQ(saves.arrivals("shortcuts.json"), 2);
    int mostReads = 0;
    for (std::size_t number = 0; number < many; ++number) {
        mostReads = std::max(mostReads, reads.openings(nameOf(number) + ".desktop"));
    }
    EXPECT_EQ(mostReads, 2) << "for its name, and for the index of all entries";
    const auto asked = grabs.of(::getpid());
    ASSERT_TRUE(story.isFree(combinationOf(many - 1)));
    ASSERT_TRUE(waitUntil([&] { return grabs.of(::getpid()) > asked; }));
    EXPECT_EQ(grabs.of(story.utility().pid()), grabbed);
}

TEST_F(NothingTwiceTest, AChangePaintsEachPixelOnce) {
    makeList();
    menu.startHost();
    story.start({{"QT_XCB_NO_MITSHM", "1"}}); // what is painted goes through the connection
    ASSERT_TRUE(menu.showsItem());
    const auto place = story.screen.placeOf(story.openManagement());
    show::picture(story.desktop.display()); // waits until it is still
    auto painted = RecordedTraffic::ofRequests(story.desktop.display(), XCB_PUT_IMAGE);
    menu.choose("English");
    story.titles = englishTitles;
    story.reader.find("push button", "+ Add Shortcut");
    show::picture(story.desktop.display());
    const auto window = std::size_t{4} * static_cast<std::size_t>(place.width) *
                        static_cast<std::size_t>(place.height);
    const auto bytes = painted.bytesOf(story.utility().pid());
    EXPECT_GE(bytes, window / 2);
    EXPECT_LE(bytes, window + window / 10);
}

} // namespace
} // namespace hollowfernpike
