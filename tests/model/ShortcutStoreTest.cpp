#include "model/StoreScene.h"

#include "model/document/DecodingError.h"

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

TEST_F(ShortcutStoreTest, ExportIsTheIndentedDocumentAndTouchesNothing) {
    store().add(a);
    EXPECT_EQ(store().exportData(), R"([
  {
    "appBundleIdentifier" : "org.example.A",
    "appName" : "A",
    "appPath" : "\/Applications\/A.app",
    "id" : "E621E1F8-C36C-495A-93FC-0C247A3E6E01",
    "keyCode" : 0,
    "modifierFlags" : 1048576
  }
])");
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, ExportOfAnEmptyList) {
    EXPECT_EQ(store().exportData(), "[\n\n]");
}

TEST_F(ShortcutStoreTest, ExportThatFailsIsLoggedAndGivesNothing) {
    auto odd = a;
    odd.appName = "\xFF";
    store().add(odd);
    services_.standardOutput.str({});
    EXPECT_EQ(store().exportData(), std::nullopt);
    EXPECT_EQ(output(), "エクスポートエラー: 一覧の1番目の要素（1から数えて）のキー \"appName\": "
                        "UTF-8ではない文字列は書き込めません: \"\\xff\"\n");
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, ImportReplacesTheListInTheDocumentsOrder) {
    store().add(a);
    store().importData(document({c, b}));
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(files_.files[file], document({c, b}));
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, ImportOfItsOwnExportChangesNothing) {
    files_.files[file] = document({c, a, b});
    const auto exported = store().exportData();
    files_.files[file] = "overwritten";
    store().importData(*exported);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "A", "B"}));
    EXPECT_EQ(files_.files[file], document({c, a, b}));
}

TEST_F(ShortcutStoreTest, ImportOfAnEmptyListEmptiesListAndFile) {
    store().add(a);
    store().importData("[]");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(files_.files[file], "[]");
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, ImportKeepsRecordsThatShareACombinationOrAnId) {
    store().importData(document({a, makeShortcut(9, 0, command, "Twin"), a}));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Twin", "A"}));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, ImportThatFailsHandsTheErrorOnAndChangesNothing) {
    store().add(a);
    for (const auto& bad : {std::string{R"({"id":1})"}, std::string{"[{}]"}, std::string{},
                            document({b}) + "x", document({b}).substr(1)}) {
        EXPECT_THROW(store().importData(bad), DecodingError) << bad;
    }
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, TellsOfTheFirstFailureOfEachStretch) {
    int told = 0;
    const auto observer =
        services_.notificationCenter.observe(shortcutsWereNotSaved, [&] { ++told; });
    store().add(a);
    EXPECT_FALSE(store().saveFailure());
    for (int stretch = 1; stretch <= 2; ++stretch) {
        files_.writeError = FakeFileManager::error(std::errc::no_space_on_device, "満杯");
        store().remove(a.id);
        store().remove(a.id);
        EXPECT_EQ(told, stretch);
        ASSERT_TRUE(store().saveFailure());
        EXPECT_EQ(store().saveFailure()->japanese(), "満杯");
        files_.writeError.reset();
        store().add(a);
        EXPECT_FALSE(store().saveFailure());
    }
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace hollowfernpike::test
