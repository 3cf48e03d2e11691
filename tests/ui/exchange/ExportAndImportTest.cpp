#include "ui/exchange/ExchangeTest.h"

#include <QFileDialog>

#include <filesystem>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::SizeIs;
using ExportFromEach = ExchangeFromEach;
using ImportFromEach = ExchangeFromEach;

INSTANTIATE_TEST_SUITE_P(EntryPoints, ExportFromEach, entryPoints(), entryPointName);

TEST_P(ExportFromEach, ExportWritesTheWholeListToTheChosenFile) {
    const auto shown = exportSuccessfully({choose(newFile("list.json"))});
    EXPECT_EQ(shown, withSuccess({kind("save panel | Hollowfernpike.json")},
                                 "modal checkmark.circle | Shortcuts exported successfully. | OK"));
    EXPECT_EQ(desktop.fileManager.files[newFile("list.json")],
              ShortcutStore::shared().exportData());
}

TEST_P(ImportFromEach, EntriesThatWouldNotBeOpenedAreNamedBeforeTheListIsReplaced) {
    desktop.applicationBundles.standings["/a.desktop"] = platform::Standing::untrusted;
    const auto path = file("list.json", documentWith("Browser"));
    const auto shown = importAnswering({choose(path), press("Cancel")});
    ASSERT_THAT(shown, SizeIs(2));
    EXPECT_THAT(shown.back(), HasSubstr("All current shortcut settings will be replaced."));
    EXPECT_THAT(shown.back(), HasSubstr("Browser (/a.desktop)"));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, OfManySuchEntriesSomeAreNamedAndTheOthersCounted) {
    std::string document = "[";
    for (int number = 1; number <= 30; ++number) {
        const auto one = documentWith("App " + std::to_string(number));
        document += (number > 1 ? "," : "") + one.substr(1, one.size() - 2);
    }
    desktop.applicationBundles.standings["/a.desktop"] = platform::Standing::untrusted;
    const auto path = file("list.json", document + ']');
    const auto shown = importAnswering({choose(path), press("Cancel")});
    EXPECT_THAT(shown.back(), HasSubstr("App 10 (/a.desktop)"));
    EXPECT_THAT(shown.back(), testing::Not(HasSubstr("App 11 ")));
    EXPECT_THAT(shown.back(), HasSubstr("and 20 more"));
}

TEST_P(ExportFromEach, ExportThatCannotBeEncodedIsToldWithoutAPanel) {
    spoilTheList();
    EXPECT_THAT(exportAnswering({press("OK")}),
                ElementsAre("modal warning | Failed to export shortcuts. | OK"));
}

TEST_P(ExportFromEach, CancellingTheSavePanelWritesAndShowsNothing) {
    const int writes = desktop.fileManager.writes;
    EXPECT_THAT(exportAnswering({dismiss()}), SizeIs(1));
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_P(ExportFromEach, ExportOntoAFileThatExistsAsksAndReplacesItWhole) {
    const auto path = file("list.json", std::string(10'000, 'x'));
    exportSuccessfully({choose(path), press("Replace")});
    EXPECT_TRUE(eventually(
        [&] { return desktop.fileManager.files[path] == ShortcutStore::shared().exportData(); }));
}

TEST_P(ExportFromEach, ExportLeavesAFileThatShallNotBeReplaced) {
    const auto path = file("list.json", "old");
    exportAnswering({choose(path), [](QWidget& question) {
                         QWidget* panel = question.parentWidget();
                         press("Cancel")(question);
                         QMetaObject::invokeMethod(
                             panel, [panel] { dismiss()(*panel); }, Qt::QueuedConnection);
                     }});
    EXPECT_EQ(desktop.fileManager.files[path], "old");
}

TEST_P(ExportFromEach, ExportThatCannotBeWrittenIsToldWithTheReason) {
    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    EXPECT_THAT(exportAnswering({choose(newFile("list.json")), press("OK")}),
                ElementsAre(kind("save panel | Hollowfernpike.json"),
                            "modal warning | Failed to export shortcuts. | No space left on "
                            "device | OK"));
    EXPECT_FALSE(desktop.fileManager.files.contains(newFile("list.json")));
}

TEST_P(ExportFromEach, ExportWritesTheListAsItWasWhenTheExportWasChosen) {
    const auto before = ShortcutStore::shared().exportData();
    exportSuccessfully({[&](QWidget& panel) {
        addShortcut("Later", 5, command);
        choose(newFile("list.json"))(panel);
    }});
    EXPECT_EQ(desktop.fileManager.files[newFile("list.json")], before);
}

TEST_P(ExportFromEach, ExportGivesEveryNameTheExtension) {
    for (const auto* name :
         {"list", "my.list", "list.txt", "list.json.bak", "v1.", "\"quoted.x\""}) {
        SCOPED_TRACE(name);
        desktop.fileManager.files.clear();
        exportSuccessfully({choose(newFile(name))});
        std::string plain = name;
        std::erase(plain, '"');
        EXPECT_THAT(
            desktop.fileManager.files,
            ElementsAre(Pair(newFile(plain + ".json"), ShortcutStore::shared().exportData())));
    }
}

TEST_P(ExportFromEach, ExportLeavesAnExtensionAsItIsWritten) {
    exportSuccessfully({choose(newFile("LIST.JSON"))});
    EXPECT_TRUE(desktop.fileManager.files.contains(newFile("LIST.JSON")));
}

TEST_P(ExportFromEach, ExportAsksAboutTheFileThatIsReallyWritten) {
    const auto other = file("my.list", "other");
    const auto replaced = file("my.list.json", "old");
    const auto shown = exportSuccessfully({choose(other), press("Replace")});
    EXPECT_THAT(shown.at(1), HasSubstr("my.list.json"));
    EXPECT_TRUE(eventually([&] {
        return desktop.fileManager.files[replaced] == ShortcutStore::shared().exportData();
    }));
    EXPECT_EQ(desktop.fileManager.files[other], "other");
}

TEST_P(ExportFromEach, ExportAsksNothingAboutAFileThatIsNotTouched) {
    const auto other = file("my.list", "other");
    const auto shown = exportSuccessfully({choose(other)});
    EXPECT_EQ(shown.size(), GetParam().isMenu ? 2 : 1);
    EXPECT_EQ(desktop.fileManager.files[other], "other");
}

TEST_P(ExportFromEach, AFolderThatIsTypedIsEntered) {
    std::filesystem::create_directory(folder.path() / "sub.folder");
    const int writes = desktop.fileManager.writes;
    exportAnswering({[this](QWidget& panel) {
        choose(newFile("sub.folder"))(panel);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_EQ(dynamic_cast<QFileDialog&>(panel).directory().path().toStdString(),
                  newFile("sub.folder"));
        dismiss()(panel);
    }});
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_P(ExportFromEach, ExportTakesNamesInEveryScript) {
    exportSuccessfully({choose(newFile("ショートカット.json"))});
    EXPECT_TRUE(desktop.fileManager.files.contains(newFile("ショートカット.json")));
}

INSTANTIATE_TEST_SUITE_P(EntryPoints, ImportFromEach, entryPoints(), entryPointName);

TEST_P(ImportFromEach, ImportReplacesTheListAfterAQuestion) {
    const auto shown =
        importSuccessfully({choose(file("in.json", documentWith("Other"))), press("OK")});
    EXPECT_EQ(shown, withSuccess({kind("open panel"), question()},
                                 "modal information | Shortcuts imported successfully. | OK"));
    EXPECT_THAT(names(), ElementsAre("Other"));
}

TEST_P(ImportFromEach, CancellingTheOpenPanelKeepsTheListAndShowsNothing) {
    EXPECT_THAT(importAnswering({dismiss()}), SizeIs(1));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, AFileOfAnotherKindIsNotTaken) {
    const auto notes = file("notes.txt", documentWith("Other"));
    EXPECT_THAT(importAnswering({[&](QWidget& panel) {
                    choose(notes)(panel);
                    EXPECT_TRUE(panel.isVisible());
                    dismiss()(panel);
                }}),
                SizeIs(1));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, AnExtensionInCapitalsIsJsonToo) {
    importSuccessfully({choose(file("IN.JSON", documentWith("Other"))), press("OK")});
    EXPECT_THAT(names(), ElementsAre("Other"));
}

TEST_P(ImportFromEach, CancellingTheQuestionKeepsTheList) {
    EXPECT_THAT(importAnswering({choose(file("in.json", documentWith("Other"))), press("Cancel")}),
                ElementsAre(kind("open panel"), question()));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, EscapeAtTheQuestionKeepsTheList) {
    importAnswering({choose(file("in.json", documentWith("Other"))), dismiss()});
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, AFileThatCannotBeReadIsToldBeforeAnyQuestion) {
    const auto path = file("in.json", documentWith("Other"));
    desktop.fileManager.readError =
        FakeFileManager::error(std::errc::permission_denied, "権限がありません");
    EXPECT_THAT(
        importAnswering({choose(path), press("OK")}),
        ElementsAre(kind("open panel"),
                    "modal warning | Failed to import shortcuts. | Permission denied | OK"));
    EXPECT_THAT(names(), ElementsAre("Editor"));
}

TEST_P(ImportFromEach, AFileOfAnotherShapeIsToldWithTheReasonAndKeepsTheList) {
    const auto good = documentWith("Good");
    for (const auto& contents :
         {std::string("no list at all"), std::string(), std::string(R"({"id":1})"),
          std::string("[1]"), good.substr(0, good.size() - 1) + R"(,{"id":"E621E1F8"}])"}) {
        SCOPED_TRACE(contents);
        const auto shown =
            importAnswering({choose(file("in.json", contents)), press("OK"), press("OK")});
        const auto reason = reasonAgainst(contents);
        EXPECT_FALSE(reason.empty());
        EXPECT_THAT(shown,
                    ElementsAre(kind("open panel"), question(),
                                "modal warning | Invalid file format. | " + reason + " | OK"));
        EXPECT_THAT(names(), ElementsAre("Editor"));
    }
}

TEST_P(ImportFromEach, ImportTakesTheFileAsItWasBeforeTheQuestion) {
    const auto path = file("in.json", documentWith("Read"));
    importSuccessfully({choose(path), [&](QWidget& alert) {
                            desktop.fileManager.files[path] = documentWith("Written later");
                            press("OK")(alert);
                        }});
    EXPECT_THAT(names(), ElementsAre("Read"));
}

} // namespace

} // namespace hollowfernpike::test
