#include "ui/MenuExchange.h"

#include "support/TemporaryDirectory.h"
#include "ui/ModalAnswers.h"
#include "ui/WindowTest.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>

#include <fstream>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

/// Both ways to the same steps. The file panels look at real folders; what is in the files is the
/// fake file manager's.
class ExchangeTest : public WindowTest {
protected:
    ExchangeTest() {
        speak(Language::english);
        addShortcut("Editor", 0, commandKey);
    }

    /// Makes a file that panels can see.
    std::string file(const std::string& name, const std::string& contents) {
        const auto path = folder.path() / name;
        std::ofstream(path).put('\n');
        desktop.fileManager.files[path] = contents;
        return path;
    }

    std::string newFile(const std::string& name) const { return folder.path() / name; }

    /// The document of a list with one shortcut.
    static std::string documentWith(const std::string& name) {
        return R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E01","keyCode":1,"modifierFlags":1048576,)"
               R"("appPath":"/a.desktop","appBundleIdentifier":"a","appName":")" +
               name + R"("}])";
    }

    static std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
            names.push_back(shortcut.appName);
        }
        return names;
    }

    /// A list that no document can hold.
    static void spoilTheList() { addShortcut("\xff", 1, commandKey); }

    TemporaryDirectory folder;
};

/// Where export and import begin, and how their dialogs are shown from there.
struct EntryPoint {
    const char* name;
    const char* kind; ///< of panels and the question
    bool isMenu;
};

// NOLINTNEXTLINE(readability-identifier-naming): called so by the test library
void PrintTo(const EntryPoint& entry, std::ostream* out) {
    *out << entry.name;
}

class ExchangeFromEach : public ExchangeTest, public testing::WithParamInterface<EntryPoint> {
protected:
    using Answers = std::deque<ModalAnswers::Answer>;
    using Shown = std::vector<std::string>;

    /// Exports, or imports, and returns what was shown until every answer was given.
    Shown exportAnswering(const Answers& given) {
        return answering(given, MenuExchange::exportShortcuts,
                         &MainWindowController::exportShortcuts);
    }
    Shown importAnswering(const Answers& given) {
        return answering(given, MenuExchange::importShortcuts,
                         &MainWindowController::importShortcuts);
    }

    /// The same for what succeeds, which the menu tells.
    Shown exportSuccessfully(Answers given) { return exportAnswering(andOk(std::move(given))); }
    Shown importSuccessfully(Answers given) { return importAnswering(andOk(std::move(given))); }

    /// A line of what was shown that is told by the menu only.
    static Shown withSuccess(Shown shown, const std::string& success) {
        if (GetParam().isMenu) {
            shown.push_back(success);
        }
        return shown;
    }

    static std::string kind(const std::string& dialog) { return GetParam().kind + (" " + dialog); }

    static std::string question() {
        return kind("warning | Import Shortcuts? | All current shortcut settings will be "
                    "replaced. | OK | Cancel");
    }

private:
    Shown answering(const Answers& given, void (*fromMenu)(),
                    void (MainWindowController::*fromWindow)()) {
        ModalAnswers answers(given);
        if (GetParam().isMenu) {
            fromMenu();
        } else {
            (open().*fromWindow)();
        }
        EXPECT_TRUE(eventually([&] { return answers.allGiven(); }));
        settle();
        return answers.shown();
    }

    static Answers andOk(Answers given) {
        if (GetParam().isMenu) {
            given.push_back(press("OK"));
        }
        return given;
    }
};

INSTANTIATE_TEST_SUITE_P(EntryPoints, ExchangeFromEach,
                         testing::Values(EntryPoint{"menu", "modal", true},
                                         EntryPoint{"window", "sheet", false}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(ExchangeFromEach, ExportWritesTheWholeListToTheChosenFile) {
    const auto shown = exportSuccessfully({choose(newFile("list.json"))});
    EXPECT_EQ(shown, withSuccess({kind("save panel | Hollowfernpike.json")},
                                 "modal symbol | Shortcuts exported successfully. | OK"));
    EXPECT_EQ(desktop.fileManager.files[newFile("list.json")],
              ShortcutStore::shared().exportData());
}

TEST_P(ExchangeFromEach, ExportThatCannotBeEncodedIsToldWithoutAPanel) {
    spoilTheList();
    EXPECT_THAT(exportAnswering({press("OK")}),
                ElementsAre("modal warning | Failed to export shortcuts. | OK"));
}

TEST_P(ExchangeFromEach, CancellingTheSavePanelWritesAndShowsNothing) {
    const int writes = desktop.fileManager.writes;
    EXPECT_THAT(exportAnswering({dismiss()}), SizeIs(1));
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_P(ExchangeFromEach, ExportOntoAFileThatExistsAsksAndReplacesItWhole) {
    const auto path = file("list.json", std::string(10'000, 'x'));
    exportSuccessfully({choose(path), press("&Yes")});
    EXPECT_EQ(desktop.fileManager.files[path], ShortcutStore::shared().exportData());
}

TEST_P(ExchangeFromEach, ExportLeavesAFileThatShallNotBeReplaced) {
    const auto path = file("list.json", "old");
    exportAnswering({choose(path), [](QWidget& question) {
                         QWidget* panel = question.parentWidget();
                         press("&No")(question);
                         QMetaObject::invokeMethod(
                             panel, [panel] { dismiss()(*panel); }, Qt::QueuedConnection);
                     }});
    EXPECT_EQ(desktop.fileManager.files[path], "old");
}

TEST_P(ExchangeFromEach, ExportThatCannotBeWrittenIsToldWithTheReason) {
    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    EXPECT_THAT(exportAnswering({choose(newFile("list.json")), press("OK")}),
                ElementsAre(kind("save panel | Hollowfernpike.json"),
                            "modal warning | Failed to export shortcuts. | No space left on "
                            "device | OK"));
    EXPECT_FALSE(desktop.fileManager.files.contains(newFile("list.json")));
}

TEST_P(ExchangeFromEach, ExportWritesTheListAsItWasWhenTheExportWasChosen) {
    const auto before = ShortcutStore::shared().exportData();
    exportSuccessfully({[&](QWidget& panel) {
        addShortcut("Later", 5, commandKey);
        choose(newFile("list.json"))(panel);
    }});
    EXPECT_EQ(desktop.fileManager.files[newFile("list.json")], before);
}

TEST_P(ExchangeFromEach, ExportGivesANameWithoutAnExtensionOne) {
    exportSuccessfully({choose(newFile("list"))});
    EXPECT_TRUE(desktop.fileManager.files.contains(newFile("list.json")));
}

TEST_P(ExchangeFromEach, ExportTakesNamesInEveryScript) {
    exportSuccessfully({choose(newFile("ショートカット.json"))});
    EXPECT_TRUE(desktop.fileManager.files.contains(newFile("ショートカット.json")));
}

TEST_P(ExchangeFromEach, ImportReplacesTheListAfterAQuestion) {
    const auto shown =
        importSuccessfully({choose(file("in.json", documentWith("Other"))), press("OK")});
    EXPECT_EQ(shown, withSuccess({kind("open panel"), question()},
                                 "modal information | Shortcuts imported successfully. | OK"));
    EXPECT_THAT(names(), ElementsAre("Other"));
}

TEST_P(ExchangeFromEach, CancellingTheOpenPanelKeepsTheListAndShowsNothing) {
    EXPECT_THAT(importAnswering({dismiss()}), SizeIs(1));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ExchangeFromEach, CancellingTheQuestionKeepsTheList) {
    EXPECT_THAT(importAnswering({choose(file("in.json", documentWith("Other"))), press("Cancel")}),
                ElementsAre(kind("open panel"), question()));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ExchangeFromEach, EscapeAtTheQuestionKeepsTheList) {
    importAnswering({choose(file("in.json", documentWith("Other"))), dismiss()});
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ExchangeFromEach, AFileThatCannotBeReadIsToldBeforeAnyQuestion) {
    const auto path = file("in.json", documentWith("Other"));
    desktop.fileManager.readError =
        FakeFileManager::error(std::errc::permission_denied, "権限がありません");
    EXPECT_THAT(
        importAnswering({choose(path), press("OK")}),
        ElementsAre(kind("open panel"),
                    "modal warning | Failed to import shortcuts. | Permission denied | OK"));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ExchangeFromEach, AFileOfAnotherShapeIsToldWithTheReasonAndKeepsTheList) {
    const auto good = documentWith("Good");
    for (const auto& contents :
         {std::string("no list at all"), std::string(), std::string(R"({"id":1})"),
          std::string("[1]"), good.substr(0, good.size() - 1) + R"(,{"id":"E621E1F8"}])"}) {
        SCOPED_TRACE(contents);
        const auto shown =
            importAnswering({choose(file("in.json", contents)), press("OK"), press("OK")});
        EXPECT_THAT(shown, ElementsAre(kind("open panel"), question(),
                                       MatchesRegex("modal warning [|] Invalid file format[.] [|] "
                                                    ".+ [|] OK")));
        EXPECT_THAT(names(), ElementsAre("Editor"));
    }
}

TEST_P(ExchangeFromEach, ImportTakesTheFileAsItWasBeforeTheQuestion) {
    const auto path = file("in.json", documentWith("Read"));
    importSuccessfully({choose(path), [&](QWidget& alert) {
                            desktop.fileManager.files[path] = documentWith("Written later");
                            press("OK")(alert);
                        }});
    EXPECT_THAT(names(), ElementsAre("Read"));
}

TEST_P(ExchangeFromEach, NeitherBringsTheApplicationToTheFront) {
    exportAnswering({dismiss()});
    importAnswering({dismiss()});
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_P(ExchangeFromEach, SpeaksJapanese) {
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

TEST_F(ExchangeTest, TheMenuTellsOfAnExportInJapanese) {
    speak(Language::japanese);
    ModalAnswers answers({choose(newFile("list.json")), press("OK")});
    MenuExchange::exportShortcuts();
    EXPECT_EQ(answers.shown().at(1), "modal symbol | ショートカットをエクスポートしました。 | OK");
}

TEST_F(ExchangeTest, TheMenuTellsOfAnImportInJapanese) {
    speak(Language::japanese);
    ModalAnswers answers(
        {choose(file("in.json", documentWith("Other"))), press("OK"), press("OK")});
    MenuExchange::importShortcuts();
    EXPECT_EQ(answers.shown().at(2),
              "modal information | ショートカットをインポートしました。 | OK");
}

TEST_F(ExchangeTest, CardsFollowAnImportAtOnce) {
    ModalAnswers answers({choose(file("in.json", documentWith("Other"))), press("OK")});
    open().importShortcuts();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    settle();
    EXPECT_THAT(shownNames(), ElementsAre("Other"));
}

TEST_F(ExchangeTest, WithoutAWindowTheListIsStillEncodedButNoPanelIsShown) {
    spoilTheList();
    delete open().window();
    ModalAnswers answers({press("OK")});
    controller->exportShortcuts();
    EXPECT_THAT(answers.shown(), ElementsAre("modal warning | Failed to export shortcuts. | OK"));
}

TEST_F(ExchangeTest, WithoutAWindowNothingIsShownOrWritten) {
    delete open().window();
    const int writes = desktop.fileManager.writes;
    controller->exportShortcuts();
    controller->importShortcuts();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_F(ExchangeTest, AWindowThatGoesTakesItsSheetAlong) {
    open().exportShortcuts();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    controller.reset();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ExchangeTest, TheButtonOfTheHeaderBeginsAnExport) {
    ModalAnswers answers({dismiss()});
    open().exportButton()->click();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    EXPECT_THAT(answers.shown(), ElementsAre("sheet save panel | Hollowfernpike.json"));
}

TEST_F(ExchangeTest, TheButtonOfTheHeaderBeginsAnImport) {
    ModalAnswers answers({dismiss()});
    open().importButton()->click();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    EXPECT_THAT(answers.shown(), ElementsAre("sheet open panel"));
}

TEST_F(ExchangeTest, SheetsDoNotBlock) {
    open().exportShortcuts();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget()->parentWidget(), controller->window());
}

TEST_F(ExchangeTest, PanelsShowJsonFilesAlone) {
    ModalAnswers answers({[](QWidget& dialog) {
                              const auto& panel = dynamic_cast<QFileDialog&>(dialog);
                              EXPECT_EQ(panel.nameFilters(), QStringList("JSON (*.json)"));
                              EXPECT_EQ(panel.fileMode(), QFileDialog::AnyFile);
                              EXPECT_FALSE(panel.testOption(QFileDialog::ReadOnly));
                              EXPECT_FALSE(panel.testOption(QFileDialog::DontConfirmOverwrite));
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
    MenuExchange::exportShortcuts();
    MenuExchange::importShortcuts();
    EXPECT_TRUE(answers.allGiven());
}

TEST_F(ExchangeTest, AnEndOfTheProgramEndsTheMenusFlowAtOnce) {
    const int writes = desktop.fileManager.writes;
    ModalAnswers answers({[](QWidget&) { QCoreApplication::exit(7); }});
    bool returned = false;
    QTimer::singleShot(0, [&] {
        MenuExchange::exportShortcuts();
        returned = true;
    });
    EXPECT_EQ(QApplication::exec(), 7);
    EXPECT_TRUE(returned);
    EXPECT_THAT(answers.shown(), SizeIs(1));
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_F(ExchangeTest, AnEndOfTheProgramAtTheQuestionKeepsTheList) {
    ModalAnswers answers({choose(file("in.json", documentWith("Other"))),
                          [](QWidget&) { QCoreApplication::exit(7); }});
    QTimer::singleShot(0, [] { MenuExchange::importShortcuts(); });
    EXPECT_EQ(QApplication::exec(), 7);
    EXPECT_THAT(answers.shown(), SizeIs(2));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

} // namespace

} // namespace hollowfernpike::test
