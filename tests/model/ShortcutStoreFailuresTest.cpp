#include "model/StoreScene.h"

namespace hollowfernpike::test {
namespace {

TEST_F(ShortcutStoreTest, AFullDiskIsLoggedAndTheChangeKept) {
    store().add(a);
    files_.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "ディスクに空き容量がありません");
    store().add(b);
    EXPECT_EQ(output(), "ショートカット保存エラー: ディスクに空き容量がありません\n");
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 2);

    files_.writeError.reset();
    store().update(makeShortcut(2, 36, command, "Later"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Later"}));
    EXPECT_NE(files_.files[file].find("Later"), std::string::npos);
}

TEST_F(ShortcutStoreTest, EveryChangingOperationLogsAFailedSaveAndAnnounces) {
    store().add(a);
    files_.writeError = FakeFileManager::error(std::errc::io_error, "E");
    store().update(makeShortcut(1, 1, command, "Updated"));
    store().importData(document({b}));
    store().remove(b.id);
    EXPECT_EQ(output(), "ショートカット保存エラー: E\nショートカット保存エラー: E\n"
                        "ショートカット保存エラー: E\n");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(posts_, 4);
}

TEST_F(ShortcutStoreTest, APathThatJsonCannotCarryFailsTheSaveAndLosesNothing) {
    store().add(a);
    auto odd = b;
    odd.appPath = "/Applications/caf\xE9.app";
    store().add(odd);
    EXPECT_EQ(output(), "ショートカット保存エラー: 一覧の2番目の要素（1から数えて）のキー "
                        "\"appPath\": UTF-8ではない文字列は書き込めません: "
                        "\"/Applications/caf\\xe9.app\"\n");
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(store().shortcuts()[1].appPath, odd.appPath);
    EXPECT_EQ(posts_, 2);
}

} // namespace
} // namespace hollowfernpike::test
