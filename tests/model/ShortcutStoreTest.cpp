#include "model/ShortcutStore.h"

#include "model/DecodingError.h"
#include "model/ModelServices.h"
#include "model/Shortcuts.h"
#include "support/FakeFileManager.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

const std::filesystem::path file = "/home/someone/.local/share/Hollowfernpike/shortcuts.json";
const std::string warning = "警告: 同じショートカットキーが既に登録されています\n";

class ShortcutStoreTest : public testing::Test {
protected:
    static ShortcutStore& store() { return ShortcutStore::shared(); }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& shortcut : store().shortcuts()) {
            result.push_back(shortcut.appName);
        }
        return result;
    }

    std::string output() const { return services_.standardOutput.str(); }

    FakeFileManager files_;
    ModelServices services_{files_};
    int posts_ = 0;
    std::unique_ptr<platform::Subscription> observer_ =
        services_.notificationCenter.observe("shortcutsDidChange", [this] { ++posts_; });
};

const auto a = makeShortcut(1, 0, commandKey, "A");
const auto b = makeShortcut(2, 11, commandKey, "B");
const auto c = makeShortcut(3, 8, commandKey, "C");

std::string document(const std::vector<AppShortcut>& shortcuts) {
    std::string text;
    for (const auto& shortcut : shortcuts) {
        text.append(text.empty() ? "[" : ",")
            .append(R"({"id":")" + shortcut.id.text())
            .append(R"(","keyCode":)" + std::to_string(shortcut.keyCode))
            .append(R"(,"modifierFlags":)" + std::to_string(shortcut.modifierFlags))
            .append(R"(,"appPath":"\/Applications\/)" + shortcut.appName)
            .append(R"(.app","appName":")" + shortcut.appName)
            .append(R"(","appBundleIdentifier":"org.example.)" + shortcut.appName + R"("})");
    }
    return text + ']';
}

// --- construction and loading ---

TEST_F(ShortcutStoreTest, keepsItsFileInAFolderOfItsOwn) {
    EXPECT_EQ(store().fileURL(), file);
    EXPECT_TRUE(files_.createdDirectories.contains(file.parent_path()));
}

TEST_F(ShortcutStoreTest, takesTheFirstOfSeveralDirectories) {
    files_.directories = {"/first", "/second"};
    EXPECT_EQ(store().fileURL(), "/first/Hollowfernpike/shortcuts.json");
}

TEST_F(ShortcutStoreTest, withoutADirectoryForDataTheProcessEnds) {
    files_.directories.clear();
    EXPECT_DEATH(store(), "fatal");
}

TEST_F(ShortcutStoreTest, aFolderThatCannotBeMadeIsNotReported) {
    files_.createDirectoryError = FakeFileManager::error(std::errc::permission_denied, "拒否");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, withoutAFileTheListIsEmptyAndNothingIsSaid) {
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "");
    EXPECT_EQ(posts_, 0);
    EXPECT_EQ(files_.writes, 0);
}

TEST_F(ShortcutStoreTest, loadsItsFileInOrderWithoutAnnouncing) {
    files_.files[file] = document({b, a, c});
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "A", "C"}));
    EXPECT_EQ(fields(store().shortcuts()[1]), fields(a));
    EXPECT_EQ(posts_, 0);
    EXPECT_EQ(files_.writes, 0);
}

TEST_F(ShortcutStoreTest, loadsIndentedDocumentsToo) {
    store().add(a);
    files_.files[file] = *store().exportData();
    ModelServices::restart();
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

TEST_F(ShortcutStoreTest, loadsDuplicatesAsTheyStand) {
    files_.files[file] = document({a, a});
    EXPECT_EQ(store().shortcuts().size(), 2U);
}

TEST_F(ShortcutStoreTest, doesNotReadTheFileAgain) {
    files_.files[file] = document({a});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    files_.files[file] = document({b});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

TEST_F(ShortcutStoreTest, anUnreadableFileIsLoggedAndKept) {
    files_.files[file] = document({a});
    files_.readError =
        FakeFileManager::error(std::errc::permission_denied, "アクセス権がありません");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: アクセス権がありません\n");
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 0);
}

TEST_F(ShortcutStoreTest, aFileWithOneBadElementLoadsEmptyAndIsOverwrittenByTheNextAdd) {
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

TEST_F(ShortcutStoreTest, aBrokenFileIsLoggedInOneLine) {
    files_.files[file] = "[\n\n{]";
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: "
                        "JSONとして正しくありません（3行目2文字目）: 予期しない文字です\n");
}

TEST_F(ShortcutStoreTest, lineBreaksOfTheDataStayOutOfTheLog) {
    files_.files[file] = "[]";
    files_.readError = FakeFileManager::error(std::errc::io_error, "「/a\nb\x1B[2J」\r");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(output(), "ショートカット読み込みエラー: 「/a\\nb\\u001b[2J」\\r\n");
}

TEST_F(ShortcutStoreTest, aKeyThatIsUnknownIsLostOnTheNextWrite) {
    auto text = document({a});
    text.insert(2, R"("comment":"x",)");
    files_.files[file] = text;
    store().add(b);
    EXPECT_EQ(files_.files[file], document({a, b}));
}

TEST_F(ShortcutStoreTest, isMadeOnceAndKeepsItsListWhateverBecomesOfTheFile) {
    files_.files[file] = document({a});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    files_.files[file] = document({b});
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

// --- add ---

TEST_F(ShortcutStoreTest, addAppendsWritesAndAnnounces) {
    store().add(b);
    store().add(a);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(files_.files[file], document({b, a}));
    EXPECT_EQ(posts_, 2);
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, observersFindTheFileWrittenAndTheListChanged) {
    std::string seen;
    std::size_t count = 0;
    const auto observer = services_.notificationCenter.observe(shortcutsDidChange, [&] {
        seen = files_.files[file];
        count = store().shortcuts().size();
    });
    store().add(a);
    EXPECT_EQ(seen, document({a}));
    EXPECT_EQ(count, 1U);
}

TEST_F(ShortcutStoreTest, addingATakenCombinationWarnsAndChangesNothing) {
    store().add(a);
    auto same = makeShortcut(9, 0, commandKey, "Other");
    store().add(same);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(output(), warning);
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, addComparesTheWholeFlagWord) {
    store().add(makeShortcut(1, 0, commandKey | capsLock, "Locked"));
    store().add(a);
    EXPECT_EQ(names(), (std::vector<std::string>{"Locked", "A"}));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, addKeepsOneKeyWithDifferentModifiers) {
    store().add(a);
    store().add(makeShortcut(2, 0, optionKey, "OptionA"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "OptionA"}));
}

TEST_F(ShortcutStoreTest, addDoesNotCompareIds) {
    store().add(a);
    store().add(makeShortcut(1, 11, commandKey, "SameId"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "SameId"}));
}

// --- update ---

TEST_F(ShortcutStoreTest, updateReplacesAllFieldsInPlace) {
    store().add(a);
    store().add(b);
    const auto changed = makeShortcut(1, 36, optionKey, "Changed");
    store().update(changed);
    ASSERT_EQ(names(), (std::vector<std::string>{"Changed", "B"}));
    EXPECT_EQ(fields(store().shortcuts()[0]), fields(changed));
    EXPECT_EQ(files_.files[file], document({changed, b}));
    EXPECT_EQ(posts_, 3);
}

TEST_F(ShortcutStoreTest, updateWithItsOwnCombinationIsAccepted) {
    store().add(a);
    store().update(makeShortcut(1, 0, commandKey, "OtherApplication"));
    EXPECT_EQ(names(), std::vector<std::string>{"OtherApplication"});
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, updateToATakenCombinationWarnsAndChangesNothing) {
    store().add(a);
    store().add(b);
    store().update(makeShortcut(2, 0, commandKey, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(output(), warning);
    EXPECT_EQ(files_.writes, 2);
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, updateComparesTheWholeFlagWord) {
    store().add(a);
    store().add(b);
    store().update(makeShortcut(2, 0, commandKey | capsLock, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Changed"}));
}

TEST_F(ShortcutStoreTest, updateOfAnUnknownIdDoesNothing) {
    store().add(a);
    store().update(makeShortcut(9, 0, commandKey, "Unknown"));
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(output(), "");
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, updateReplacesOnlyTheFirstOfOneId) {
    files_.files[file] = document(
        {makeShortcut(7, 1, commandKey, "First"), makeShortcut(7, 2, commandKey, "Second")});
    store().update(makeShortcut(7, 2, commandKey, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"Changed", "Second"}));
    EXPECT_EQ(output(), "");
}

// --- remove ---

TEST_F(ShortcutStoreTest, removeClosesTheGap) {
    files_.files[file] = document({a, b, c});
    store().remove(b.id);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "C"}));
    EXPECT_EQ(files_.files[file], document({a, c}));
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, removeTakesEveryRecordOfOneId) {
    files_.files[file] = document(
        {makeShortcut(7, 1, commandKey, "First"), b, makeShortcut(7, 2, commandKey, "Second")});
    store().remove(idNumber(7));
    EXPECT_EQ(names(), std::vector<std::string>{"B"});
}

TEST_F(ShortcutStoreTest, removeOfAnUnknownIdWritesAndAnnouncesAnyway) {
    store().add(a);
    files_.files.clear();
    store().remove(idNumber(9));
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, removeTakesAnIdOutOfTheListItself) {
    files_.files[file] = document({a, b, c});
    store().remove(store().shortcuts()[0].id);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "C"}));
}

// --- saving that fails ---

TEST_F(ShortcutStoreTest, aFullDiskIsLoggedAndTheChangeKept) {
    store().add(a);
    files_.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "ディスクに空き容量がありません");
    store().add(b);
    EXPECT_EQ(output(), "ショートカット保存エラー: ディスクに空き容量がありません\n");
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 2);

    files_.writeError.reset();
    store().update(makeShortcut(2, 36, commandKey, "Later"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Later"}));
    EXPECT_NE(files_.files[file].find("Later"), std::string::npos);
}

TEST_F(ShortcutStoreTest, everyChangingOperationLogsAFailedSaveAndAnnounces) {
    store().add(a);
    files_.writeError = FakeFileManager::error(std::errc::io_error, "E");
    store().update(makeShortcut(1, 1, commandKey, "Updated"));
    store().importData(document({b}));
    store().remove(b.id);
    EXPECT_EQ(output(), "ショートカット保存エラー: E\nショートカット保存エラー: E\n"
                        "ショートカット保存エラー: E\n");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(posts_, 4);
}

TEST_F(ShortcutStoreTest, aPathThatJsonCannotCarryFailsTheSaveAndLosesNothing) {
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

// --- export and import ---

TEST_F(ShortcutStoreTest, exportIsTheIndentedDocumentAndTouchesNothing) {
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

TEST_F(ShortcutStoreTest, exportOfAnEmptyList) {
    EXPECT_EQ(store().exportData(), "[\n\n]");
}

TEST_F(ShortcutStoreTest, exportThatFailsIsLoggedAndGivesNothing) {
    auto odd = a;
    odd.appName = "\xFF";
    store().add(odd);
    services_.standardOutput.str({});
    EXPECT_EQ(store().exportData(), std::nullopt);
    EXPECT_EQ(output(), "エクスポートエラー: 一覧の1番目の要素（1から数えて）のキー \"appName\": "
                        "UTF-8ではない文字列は書き込めません: \"\\xff\"\n");
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, importReplacesTheListInTheDocumentsOrder) {
    store().add(a);
    store().importData(document({c, b}));
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(files_.files[file], document({c, b}));
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, importOfItsOwnExportChangesNothing) {
    files_.files[file] = document({c, a, b});
    const auto exported = store().exportData();
    files_.files[file] = "overwritten";
    store().importData(*exported);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "A", "B"}));
    EXPECT_EQ(files_.files[file], document({c, a, b}));
}

TEST_F(ShortcutStoreTest, importOfAnEmptyListEmptiesListAndFile) {
    store().add(a);
    store().importData("[]");
    EXPECT_TRUE(store().shortcuts().empty());
    EXPECT_EQ(files_.files[file], "[]");
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, importKeepsRecordsThatShareACombinationOrAnId) {
    store().importData(document({a, makeShortcut(9, 0, commandKey, "Twin"), a}));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Twin", "A"}));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, importThatFailsHandsTheErrorOnAndChangesNothing) {
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
