#include "ui/exchange/ExchangeTest.h"

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;

using WindowExchangeTest = ExchangeTest;

/// Answers a dialog that must be a sheet on the window, or stand alone if that is null.
ModalAnswers::Answer onWindow(const QWidget* window, const ModalAnswers::Answer& answer) {
    return [window, answer](QWidget& dialog) {
        EXPECT_EQ(dialog.parentWidget(), window);
        EXPECT_EQ(dialog.windowModality(),
                  window != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
        answer(dialog);
    };
}

TEST_F(WindowExchangeTest, PanelsAndQuestionsAreSheetsOnTheWindowAndAlertsStandAlone) {
    const QWidget* window = open().window();
    const auto answering = [&](const std::deque<ModalAnswers::Answer>& given,
                               void (MainWindowController::*action)()) {
        ModalAnswers answers(given);
        (*controller.*action)();
        EXPECT_TRUE(eventually([&] { return answers.allGiven(); }));
        EXPECT_EQ(answers.shown().size(), given.size());
    };
    const auto document = file("in.json", "{}");
    answering({onWindow(window, choose(document)), onWindow(window, press("OK")),
               onWindow(nullptr, press("OK"))},
              &MainWindowController::importShortcuts);
    desktop.fileManager.readError =
        FakeFileManager::error(std::errc::permission_denied, "権限がありません");
    answering({onWindow(window, choose(document)), onWindow(nullptr, press("OK"))},
              &MainWindowController::importShortcuts);
    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    answering({onWindow(window, choose(newFile("list.json"))), onWindow(nullptr, press("OK"))},
              &MainWindowController::exportShortcuts);
}

TEST_F(WindowExchangeTest, CardsFollowAnImportAtOnce) {
    ModalAnswers answers({choose(file("in.json", documentWith("Other"))), press("OK")});
    open().importShortcuts();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    settle();
    EXPECT_THAT(shownNames(), ElementsAre("Other"));
}

TEST_F(WindowExchangeTest, WithoutAWindowTheListIsStillEncodedButNoPanelIsShown) {
    spoilTheList();
    delete open().window();
    ModalAnswers answers({press("OK")});
    controller->exportShortcuts();
    EXPECT_THAT(answers.shown(), ElementsAre("modal warning | Failed to export shortcuts. | OK"));
}

TEST_F(WindowExchangeTest, WithoutAWindowNothingIsShownOrWritten) {
    delete open().window();
    const int writes = desktop.fileManager.writes;
    controller->exportShortcuts();
    controller->importShortcuts();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_F(WindowExchangeTest, AWindowThatGoesTakesItsSheetAlong) {
    open().exportShortcuts();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    controller.reset();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(WindowExchangeTest, TheButtonOfTheHeaderBeginsAnExport) {
    ModalAnswers answers({dismiss()});
    open().exportButton()->click();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    EXPECT_THAT(answers.shown(), ElementsAre("sheet save panel | Hollowfernpike.json"));
}

TEST_F(WindowExchangeTest, TheButtonOfTheHeaderBeginsAnImport) {
    ModalAnswers answers({dismiss()});
    open().importButton()->click();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    EXPECT_THAT(answers.shown(), ElementsAre("sheet open panel"));
}

TEST_F(WindowExchangeTest, SheetsDoNotBlock) {
    open().exportShortcuts();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget()->parentWidget(), controller->window());
}

} // namespace

} // namespace hollowfernpike::test
