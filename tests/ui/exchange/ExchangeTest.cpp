#include "ui/exchange/ExchangeTest.h"

#include <QFileDialog>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using ExchangeInEach = ExchangeFromEach;
using MenuExchangeTest = ExchangeTest;

INSTANTIATE_TEST_SUITE_P(EntryPoints, ExchangeInEach, entryPoints(), entryPointName);

TEST_P(ExchangeInEach, NeitherBringsTheApplicationToTheFront) {
    exportAnswering({dismiss()});
    importAnswering({dismiss()});
    exportSuccessfully({choose(newFile("list.json"))});
    importSuccessfully({choose(file("in.json", documentWith("Other"))), press("OK")});
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_P(ExchangeInEach, NoFailureBringsTheApplicationToTheFront) {
    const auto document = file("in.json", "{}");
    EXPECT_THAT(importAnswering({choose(document), press("OK"), press("OK")}), SizeIs(3));
    desktop.fileManager.readError =
        FakeFileManager::error(std::errc::permission_denied, "権限がありません");
    EXPECT_THAT(importAnswering({choose(document), press("OK")}), SizeIs(2));
    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    EXPECT_THAT(exportAnswering({choose(newFile("list.json")), press("OK")}), SizeIs(2));
    spoilTheList();
    EXPECT_THAT(exportAnswering({press("OK")}), SizeIs(1));
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_P(ExchangeInEach, TextsAreInTheLanguageOfTheMomentInWhichTheyAreShown) {
    const auto switching = [](Language language, const ModalAnswers::Answer& answer) {
        return [language, answer](QWidget& dialog) {
            Language::setCurrent(language);
            answer(dialog);
        };
    };
    const auto imported =
        importAnswering({switching(Language::japanese, choose(file("in.json", "{}"))),
                         switching(Language::english, press("OK")), press("OK")});
    ASSERT_THAT(imported, SizeIs(3));
    EXPECT_THAT(imported[1], EndsWith(" | OK | キャンセル"));
    EXPECT_THAT(imported[1], HasSubstr("ショートカットをインポートしますか？"));
    EXPECT_THAT(imported[2], StartsWith("modal warning | Invalid file format. | "));

    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    const auto exported =
        exportAnswering({switching(Language::japanese, choose(newFile("list.json"))), press("OK")});
    ASSERT_THAT(exported, SizeIs(2));
    EXPECT_EQ(exported[1],
              "modal warning | エクスポートに失敗しました。 | 空き容量がありません | OK");
}

TEST_P(ExchangeInEach, SpeaksJapanese) {
    speak(Language::japanese);
    const auto document = file("in.json", "{}");
    EXPECT_EQ(importAnswering({choose(document), press("キャンセル")}).at(1),
              kind("warning | ショートカットをインポートしますか？ | "
                   "現在のショートカット設定はすべて上書きされます。 | OK | キャンセル"));
    EXPECT_THAT(importAnswering({choose(document), press("OK"), press("OK")}).at(2),
                StartsWith("modal warning | ファイル形式が正しくありません。 | "));

    desktop.fileManager.readError =
        FakeFileManager::error(std::errc::permission_denied, "権限がありません");
    EXPECT_EQ(importAnswering({choose(document), press("OK")}).at(1),
              "modal warning | インポートに失敗しました。 | 権限がありません | OK");

    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    EXPECT_EQ(exportAnswering({choose(newFile("list.json")), press("OK")}).at(1),
              "modal warning | エクスポートに失敗しました。 | 空き容量がありません | OK");
}

TEST_F(MenuExchangeTest, TheMenuTellsOfAnExportInJapanese) {
    speak(Language::japanese);
    ModalAnswers answers({choose(newFile("list.json")), press("OK")});
    ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
    EXPECT_EQ(answers.shown().at(1),
              "modal checkmark.circle | ショートカットをエクスポートしました。 | OK");
}

TEST_F(MenuExchangeTest, TheMenuTellsOfAnImportInJapanese) {
    speak(Language::japanese);
    ModalAnswers answers(
        {choose(file("in.json", documentWith("Other"))), press("OK"), press("OK")});
    ShortcutExchange::importShortcuts(ExchangePresentation::modal());
    EXPECT_EQ(answers.shown().at(2),
              "modal information | ショートカットをインポートしました。 | OK");
}

TEST_F(MenuExchangeTest, PanelsShowJsonFilesAlone) {
    ModalAnswers answers({[](QWidget& dialog) {
                              const auto& panel = dynamic_cast<QFileDialog&>(dialog);
                              EXPECT_EQ(panel.nameFilters(), QStringList("JSON (*.json)"));
                              EXPECT_EQ(panel.fileMode(), QFileDialog::AnyFile);
                              EXPECT_FALSE(panel.testOption(QFileDialog::ReadOnly));
                              EXPECT_EQ(dialog.windowTitle(), "Export Shortcuts");
                              dialog.close();
                          },
                          [](QWidget& dialog) {
                              const auto& panel = dynamic_cast<QFileDialog&>(dialog);
                              EXPECT_EQ(panel.nameFilters(), QStringList("JSON (*.json)"));
                              EXPECT_EQ(panel.fileMode(), QFileDialog::ExistingFile);
                              EXPECT_EQ(dialog.windowTitle(), "Import Shortcuts");
                              dialog.close();
                          }});
    ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
    ShortcutExchange::importShortcuts(ExchangePresentation::modal());
    EXPECT_TRUE(answers.allGiven());
}

TEST_F(MenuExchangeTest, AnEndOfTheProgramEndsTheMenusFlowAtOnce) {
    const int writes = desktop.fileManager.writes;
    ModalAnswers answers({[](QWidget&) { QCoreApplication::exit(7); }});
    bool returned = false;
    QTimer::singleShot(0, [&] {
        ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
        returned = true;
    });
    EXPECT_EQ(QApplication::exec(), 7);
    EXPECT_TRUE(returned);
    EXPECT_THAT(answers.shown(), SizeIs(1));
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_F(MenuExchangeTest, AnEndOfTheProgramAtTheQuestionKeepsTheList) {
    ModalAnswers answers({choose(file("in.json", documentWith("Other"))),
                          [](QWidget&) { QCoreApplication::exit(7); }});
    QTimer::singleShot(0, [] { ShortcutExchange::importShortcuts(ExchangePresentation::modal()); });
    EXPECT_EQ(QApplication::exec(), 7);
    EXPECT_THAT(answers.shown(), SizeIs(2));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

} // namespace

} // namespace hollowfernpike::test
