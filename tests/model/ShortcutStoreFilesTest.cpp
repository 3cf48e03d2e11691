#include "model/ShortcutStore.h"

#include "model/ModelServices.h"
#include "model/Shortcuts.h"
#include "platform/freedesktop/files/FileManager.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

/// The store over real files.
class ShortcutStoreFilesTest : public testing::Test {
protected:
    ShortcutStoreFilesTest() { useDataHome(home_.path() / "data"); }

    static void useDataHome(const std::filesystem::path& directory) {
        ::setenv("XDG_DATA_HOME", directory.c_str(), 1);
    }

    static ShortcutStore& store() { return ShortcutStore::shared(); }

    std::filesystem::path file() const {
        return home_.path() / "data/Hollowfernpike/shortcuts.json";
    }

    void write(const std::string& text) const {
        std::filesystem::create_directories(file().parent_path());
        std::ofstream{file(), std::ios::binary} << text;
    }

    std::string output() const { return services_.standardOutput.str(); }

    TemporaryDirectory home_;
    freedesktop::FileManager files_;
    ModelServices services_{files_};
};

TEST_F(ShortcutStoreFilesTest, MakesItsFolderWithMissingParentsAndWritesOnTheFirstChange) {
    EXPECT_EQ(store().fileURL(), file());
    EXPECT_TRUE(std::filesystem::is_directory(file().parent_path()));
    EXPECT_FALSE(std::filesystem::exists(file()));
    store().add(makeShortcut(1, 0, command, "A"));
    EXPECT_EQ(contentsOf(file()),
              R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E01","keyCode":0,)"
              R"("modifierFlags":1048576,"appPath":"\/Applications\/A.app","appName":"A",)"
              R"("appBundleIdentifier":"org.example.A"}])");
}

TEST_F(ShortcutStoreFilesTest, TheListSurvivesARestart) {
    const auto odd = makeShortcut(1, 65535, ~0ULL, "日本語 😀 \"\\/\n");
    store().add(odd);
    store().add(makeShortcut(2, 11, command, "B"));
    ModelServices::restart();
    ASSERT_EQ(store().shortcuts().size(), 2U);
    EXPECT_EQ(fields(store().shortcuts()[0]), fields(odd));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreFilesTest, AFolderThatCannotBeMadeFailsTheSaveAlone) {
    std::ofstream{home_.path() / "occupied"} << "a file";
    useDataHome(home_.path() / "occupied");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "");
    store().add(makeShortcut(1, 0, command));
    EXPECT_EQ(output(), "ショートカット保存エラー: 「" +
                            (home_.path() / "occupied/Hollowfernpike/shortcuts.json").string() +
                            "」に書き込めません: フォルダではありません\n");
    EXPECT_EQ(store().shortcuts().size(), 1U);
    EXPECT_EQ(contentsOf(home_.path() / "occupied"), "a file");
}

TEST_F(ShortcutStoreFilesTest, AFileThatCannotBeReadLoadsEmpty) {
    std::filesystem::create_directories(file());
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: 「" + file().string() +
                            "」を読み込めません: フォルダです\n");
}

TEST_F(ShortcutStoreFilesTest, ABrokenFileIsKeptUntilTheNextSave) {
    write("[{");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(contentsOf(file()), "[{");
    EXPECT_EQ(output(), "ショートカット読み込みエラー: JSONとして正しくありません"
                        "（1行目3文字目）: 文書が途中で終わっています\n");
    store().remove(UUID{});
    EXPECT_EQ(contentsOf(file()), "[]");
}

TEST_F(ShortcutStoreFilesTest, LeavesNothingBesideItsFile) {
    for (std::uint8_t number = 0; number < 20; ++number) {
        store().add(makeShortcut(number, number, command));
    }
    const std::filesystem::directory_iterator entries{file().parent_path()};
    EXPECT_EQ(std::distance(entries, {}), 1);
}

} // namespace
} // namespace hollowfernpike::test
