#include "desktop/beginner/FirstLanguage.h"
#include "desktop/beginner/FontSettings.h"
#include "desktop/editor/EditorStory.h"
#include "show/Camera.h"
#include "show/Typing.h"
#include "support/Files.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace hollowfernpike {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// Where file panels begin and where they lead to.
class FilePanelsTest : public testing::Test {
protected:
    EditorStory story;
    const fs::path documents = story.desktop.home() / "Papers";

    void SetUp() override {
        fs::create_directory(documents);
        writeFile(story.desktop.home() / ".config/user-dirs.dirs",
                  "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
        story.start();
        story.openManagement();
    }

    std::set<std::string> namesIn(std::string_view title) {
        std::set<std::string> names;
        for (const auto& part : story.reader.partsOf(story.reader.find("dialog", title))) {
            names.insert(part.name);
        }
        return names;
    }

    bool shows(std::string_view title, const std::string& name) {
        return waitUntil([&] { return namesIn(title).contains(name); });
    }
};

TEST_F(FilePanelsTest, AnExportGoesToTheDocumentsUnlessToldOtherwise) {
    story.strikeAndLeave(story.clickExport(), "RTRN");
    EXPECT_TRUE(waitUntil([&] { return fs::exists(documents / "Hollowfernpike.json"); }));
}

TEST_F(FilePanelsTest, TheNextOneBeginsWhereTheLastOneEnded) {
    const auto elsewhere = story.desktop.home() / "elsewhere";
    fs::create_directory(elsewhere);
    story.enterPath(story.clickExport(), elsewhere / "one.json");
    ASSERT_TRUE(waitUntil([&] { return fs::exists(elsewhere / "one.json"); }));
    story.strikeAndLeave(story.clickExport(), "RTRN");
    EXPECT_TRUE(waitUntil([&] { return fs::exists(elsewhere / "Hollowfernpike.json"); }));
}

TEST_F(FilePanelsTest, LeadToTheBookmarksOfTheDesktop) {
    const auto project = story.desktop.home() / "Project X";
    fs::create_directory(project);
    writeFile(story.desktop.home() / ".config/gtk-3.0/bookmarks",
              "file://" + story.desktop.home().string() + "/Project%20X My project\n");
    story.clickExport();
    EXPECT_TRUE(shows(story.titles.exporting, "Project X"));
}

TEST_F(FilePanelsTest, SpeakTheLanguageOfTheProgram) {
    fs::create_directory(documents / "folder");
    story.clickExport();
    EXPECT_TRUE(shows(story.titles.exporting, "フォルダー"));
    EXPECT_FALSE(namesIn(story.titles.exporting).contains("Folder"));
}

TEST_F(FilePanelsTest, ShowAllColumnsWholeInALargeFont) {
    writeFile(documents / "list.json", std::string(20'000, ' '));
    setFont(story.desktop, 16);
    story.start(withFontSettings);
    story.openManagement();
    story.reader.press(story.reader.find("push button", "エクスポート"));
    story.comes(story.titles.exporting);
    const auto panel = story.reader.find("dialog", story.titles.exporting);
    story.reader.find(panel, "tree item", "list.json");
    const auto files = story.reader.find(panel, "tree", "ファイル");
    const auto whole = story.reader.placeOf(files);
    for (const char* name : {"サイズ", "タイプ", "更新日"}) {
        const auto column = story.reader.find(files, "column header", name);
        const auto place = story.reader.placeOf(column);
        EXPECT_LE(place.x + place.width, whole.x + whole.width) << name;
        // A double click on its edge makes a column as wide as its texts are.
        for (int clicks = 0; clicks < 2; ++clicks) {
            story.mouse.click(place.x + place.width - 1, place.y + place.height / 2);
        }
        show::picture(story.desktop.display()); // once nothing moves any more
        EXPECT_GE(place.width, story.reader.placeOf(column).width) << name;
    }
}

TEST_F(FilePanelsTest, WriteSizesAndDatesInThatLanguageInEverySession) {
    writeFile(documents / "list.json", std::string(20'000, ' '));
    const auto look = [this](const char* session, const char* column) {
        story.start({{"LANG", session}, {"LC_ALL", session}});
        story.openManagement();
        story.clickExport();
        const auto panel = story.reader.find("dialog", story.titles.exporting);
        const auto row = story.reader.placeOf(story.reader.find(panel, "tree item", "list.json"));
        const auto cell = story.reader.placeOf(story.reader.find(panel, "column header", column));
        return show::picture(story.desktop.display()).copy(cell.x, row.y, cell.width, row.height);
    };
    const char* japanese = "ja_JP.UTF-8";
    const char* german = "de_DE.UTF-8";
    EXPECT_EQ(look(japanese, "サイズ"), look(german, "サイズ"));
    const auto inJapanese = look(japanese, "更新日");
    EXPECT_EQ(inJapanese, look(german, "更新日"));
    beginInEnglish(story);
    const auto inEnglish = look(japanese, "Date Modified");
    EXPECT_EQ(inEnglish, look(german, "Date Modified"));
    EXPECT_NE(inEnglish, inJapanese);
}

TEST_F(FilePanelsTest, TakeJsonAlone) {
    writeFile(documents / "notes.txt", "[]");
    writeFile(documents / "list.json", "[]");
    const auto panel = story.clickImport();
    const auto field = story.part(story.titles.importing, "text", "ファイル名(N):");
    show::type(story.keyboard, (documents / "notes.txt").string());
    story.keyboard.strike({"RTRN"}); // perhaps taken by a list of completions
    story.keyboard.strike({"RTRN"});
    show::type(story.keyboard, "x");
    EXPECT_TRUE(waitUntil([&] { return story.reader.text(field).ends_with('x'); }));
    EXPECT_TRUE(story.isActive(panel));
    story.enterPath(panel, documents / "list.json");
    story.strikeAndLeave(story.comes(story.titles.alert), "ESC");
    story.managementComes();
    story.enterPath(story.clickExport(), documents / "plain");
    EXPECT_TRUE(waitUntil([&] { return fs::exists(documents / "plain.json"); }));
}

TEST_F(FilePanelsTest, AskOnceBeforeTheyReplaceAFile) {
    writeFile(documents / "Hollowfernpike.json", "old");
    const auto panel = story.clickExport();
    story.keyboard.strike({"RTRN"});
    const auto question = story.comes(story.titles.alert);
    story.reader.find("alert message",
                      "「Hollowfernpike.json」はすでに存在します。置き換えますか？");
    story.strikeAndLeave(question, "ESC");
    ASSERT_TRUE(story.isActive(panel));
    story.keyboard.strike({"RTRN"});
    story.comes(story.titles.alert, question);
    story.keyboard.strike({"RTRN"});
    story.goes(panel);
    EXPECT_TRUE(waitUntil([&] { return contentsOf(documents / "Hollowfernpike.json") != "old"; }));
    EXPECT_EQ(contents(documents / "Hollowfernpike.json"), nlohmann::json::array());
}

TEST_F(FilePanelsTest, OtherApplicationsAreLookedForWhereTheMostAre) {
    const auto shared = story.desktop.home() / "shared/applications";
    for (const char* name : {"One", "Two", "Three", "Four"}) {
        writeFile(shared / (std::string(name) + ".desktop"), "[Desktop Entry]\n");
    }
    const auto emptier = story.desktop.home() / "zone/applications";
    writeFile(emptier / "Five.desktop", "[Desktop Entry]\n");
    story.start(
        {{"XDG_DATA_DIRS", shared.parent_path().string() + ':' + emptier.parent_path().string()}});
    story.openManagement();
    const auto panel = story.openApplications(story.clickAdd());
    story.clickOn(story.part(story.titles.applications, "push button", "その他..."));
    story.comes(story.titles.applications, panel);
    story.reader.find("tree item", "Four.desktop");
    std::ptrdiff_t places = 0;
    const auto leadsToAll = [&] {
        places = 0;
        for (const auto& window : story.reader.windows()) {
            places += std::ranges::count_if(story.reader.partsOf(window), [](const auto& part) {
                return part.role == "list item" && part.name == "applications";
            });
        }
        return places == 3;
    };
    EXPECT_TRUE(waitUntil(leadsToAll)) << places << " folders of applications in the side bar";
}

} // namespace
} // namespace hollowfernpike
