#include "ui/exchange/ExchangeTest.h"

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

using ImportFromEach = ExchangeFromEach;

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
