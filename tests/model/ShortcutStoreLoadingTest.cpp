#include "model/StoreScene.h"

namespace hollowfernpike::test {
namespace {

TEST_F(ShortcutStoreTest, KeepsItsFileInAFolderOfItsOwn) {
    EXPECT_EQ(store().fileURL(), file);
    EXPECT_TRUE(files_.createdDirectories.contains(file.parent_path()));
}

TEST_F(ShortcutStoreTest, TakesTheFirstOfSeveralDirectories) {
    files_.directories = {"/first", "/second"};
    EXPECT_EQ(store().fileURL(), "/first/Hollowfernpike/shortcuts.json");
}

TEST_F(ShortcutStoreTest, WithoutADirectoryForDataTheProcessEnds) {
    files_.directories.clear();
    EXPECT_DEATH(store(), "fatal");
}

TEST_F(ShortcutStoreTest, AFolderThatCannotBeMadeIsNotReported) {
    files_.createDirectoryError = FakeFileManager::error(std::errc::permission_denied, "拒否");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, WithoutAFileTheListIsEmptyAndNothingIsSaid) {
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "");
    EXPECT_EQ(posts_, 0);
    EXPECT_EQ(files_.writes, 0);
}

TEST_F(ShortcutStoreTest, LoadsItsFileInOrderWithoutAnnouncing) {
    files_.files[file] = document({b, a, c});
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "A", "C"}));
    EXPECT_EQ(fields(store().shortcuts()[1]), fields(a));
    EXPECT_EQ(posts_, 0);
    EXPECT_EQ(files_.writes, 0);
}

TEST_F(ShortcutStoreTest, LoadsIndentedDocumentsToo) {
    store().add(a);
    files_.files[file] = *store().exportData();
    ModelServices::restart();
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

TEST_F(ShortcutStoreTest, LoadsDuplicatesAsTheyStand) {
    files_.files[file] = document({a, a});
    EXPECT_EQ(store().shortcuts().size(), 2U);
}

TEST_F(ShortcutStoreTest, AnUnreadableFileIsLoggedAndKept) {
    files_.files[file] = document({a});
    files_.readError =
        FakeFileManager::error(std::errc::permission_denied, "アクセス権がありません");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: アクセス権がありません\n");
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 0);
}

TEST_F(ShortcutStoreTest, AFileWithOneBadElementLoadsEmptyAndIsOverwrittenByTheNextAdd) {
    auto bad = document({a, b});
    bad.replace(bad.find("\"keyCode\":11"), 12, "\"keyCode\":70000");
    files_.files[file] = bad;
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: 一覧の2番目の要素（1から数えて）のキー "
                        "\"keyCode\": 70000 は範囲外です（0〜65535）\n");
    EXPECT_EQ(files_.files[file], bad);
    store().add(c);
    EXPECT_EQ(files_.files[file], document({c}));
}

TEST_F(ShortcutStoreTest, ABrokenFileIsLoggedInOneLine) {
    files_.files[file] = "[\n\n{]";
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: "
                        "JSONとして正しくありません（3行目2文字目）: 予期しない文字です\n");
}

TEST_F(ShortcutStoreTest, LineBreaksOfTheDataStayOutOfTheLog) {
    files_.files[file] = "[]";
    files_.readError = FakeFileManager::error(std::errc::io_error, "「/a\nb\x1B[2J」\r");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: 「/a\\nb\\u001b[2J」\\r\n");
}

TEST_F(ShortcutStoreTest, AKeyThatIsUnknownIsLostOnTheNextWrite) {
    auto text = document({a});
    text.insert(2, R"("comment":"x",)");
    files_.files[file] = text;
    store().add(b);
    EXPECT_EQ(files_.files[file], document({a, b}));
}

TEST_F(ShortcutStoreTest, IsMadeOnceAndKeepsItsListWhateverBecomesOfTheFile) {
    files_.files[file] = document({a});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    files_.files[file] = document({b});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

} // namespace
} // namespace hollowfernpike::test
