#include "model/StoreScene.h"
#include "model/document/DecodingError.h"

namespace hollowfernpike::test {
namespace {

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

} // namespace
} // namespace hollowfernpike::test
