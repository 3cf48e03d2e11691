#include "model/document/ShortcutEncoder.h"
#include "ui/ModalAnswers.h"
#include "ui/editor/AddEditShortcutSheet.h"
#include "ui/window/WindowTest.h"

#include <QDialog>
#include <QScreen>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MainWindowActionsTest : public WindowTest {
protected:
    MainWindowActionsTest() {
        speak(Language::english);
        addShortcut("Editor", 0, command);
        addShortcut("Browser", 1, command);
        open();
        desktop.log.clear();
    }
    void TearDown() override {
        for (AddEditShortcutSheet* editor : editors()) {
            editor->cancelSheet();
        }
        controller.reset();
        settle();
        desktop.mainQueue.runDue();
        settle();
    }

    static std::vector<AddEditShortcutSheet*> editors() {
        std::vector<AddEditShortcutSheet*> found;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* editor = dynamic_cast<AddEditShortcutSheet*>(window);
            if (editor != nullptr && editor->isVisible()) {
                found.push_back(editor);
            }
        }
        return found;
    }

    static const std::vector<AppShortcut>& shortcuts() {
        return ShortcutStore::shared().shortcuts();
    }

    /// Presses delete on a card and answers the question.
    void remove(std::size_t index, const ModalAnswers::Answer& answer) {
        ModalAnswers answers({answer});
        card(index).deleteButton().click();
        ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
        settle();
        shown = answers.shown();
    }

    std::vector<std::string> shown;
};

TEST_F(MainWindowActionsTest, AddingOpensAnEditorInTheMiddleAndBringsTheApplicationToTheFront) {
    controller->addButton()->click();
    ASSERT_THAT(editors(), SizeIs(1));
    const QWidget& editor = *editors().front();
    EXPECT_EQ(editor.windowTitle(), "Add Shortcut");
    EXPECT_EQ(editor.parentWidget(), nullptr);
    EXPECT_EQ(editor.windowModality(), Qt::NonModal);
    const QRect screen = editor.screen()->availableGeometry();
    constexpr int frame = 4; // the frame of a window is not taken into account
    EXPECT_NEAR(editor.geometry().center().x(), screen.center().x(), frame);
    EXPECT_THAT(desktop.log.calls(), ElementsAre("application.activateIgnoringOtherApps"));
}

TEST_F(MainWindowActionsTest, WhatAnAddingEditorSavesIsAdded) {
    controller->addButton()->click();
    editors().front()->onSave(shortcutFor("Terminal", 17, command));
    EXPECT_THAT(shownNames(), ElementsAre("Editor", "Browser", "Terminal"));
}

TEST_F(MainWindowActionsTest, WhatAnAddingEditorSavesAfterTheControllerIsGoneIsAdded) {
    controller->addButton()->click();
    controller.reset();
    editors().front()->onSave(shortcutFor("Terminal", 17, command));
    EXPECT_THAT(shortcuts(), SizeIs(3));
}

TEST_F(MainWindowActionsTest, EditingOpensAnEditorOnTheCardsShortcut) {
    card(1).editButton().click();
    ASSERT_THAT(editors(), SizeIs(1));
    EXPECT_EQ(editors().front()->windowTitle(), "Edit Shortcut");
    EXPECT_THAT(desktop.log.calls(), ElementsAre("application.activateIgnoringOtherApps"));
    editors().front()->saveSheet();
    EXPECT_THAT(shownNames(), ElementsAre("Editor", "Browser"));
}

TEST_F(MainWindowActionsTest, WhatAnEditingEditorSavesReplacesTheShortcut) {
    card(0).editButton().click();
    auto edited = shortcuts().front();
    edited.appName = "Better Editor";
    editors().front()->onSave(edited);
    EXPECT_THAT(shownNames(), ElementsAre("Better Editor", "Browser"));
}

TEST_F(MainWindowActionsTest, WhatAnEditingEditorSavesAfterTheControllerIsGoneReplacesTheShortcut) {
    card(1).editButton().click();
    controller.reset();
    auto edited = shortcuts().back();
    edited.appName = "Better Browser";
    editors().front()->onSave(edited);
    ASSERT_THAT(shortcuts(), SizeIs(2));
    EXPECT_EQ(shortcuts().back().appName, "Better Browser");
}

TEST_F(MainWindowActionsTest, EveryRequestOpensAFurtherEditor) {
    controller->addButton()->click();
    controller->addButton()->click();
    card(0).editButton().click();
    card(0).editButton().click();
    EXPECT_THAT(editors(), SizeIs(4));
}

TEST_F(MainWindowActionsTest, DeletingAsksInASheetOnTheWindow) {
    remove(1, [&](QWidget& sheet) {
        EXPECT_EQ(sheet.parentWidget(), controller->window());
        press("Cancel")(sheet);
    });
    EXPECT_THAT(shown, ElementsAre("sheet warning | Delete shortcut for \"Browser\"? | "
                                   "Shortcut key: ⌘S | Delete | Cancel"));
}

TEST_F(MainWindowActionsTest, ConfirmingRemovesExactlyThatCard) {
    remove(0, press("Delete"));
    EXPECT_THAT(shownNames(), ElementsAre("Browser"));
}

TEST_F(MainWindowActionsTest, ConfirmingRemovesThatCardAloneOfTwoThatDifferInTheirIdsOnly) {
    auto list = shortcuts();
    const auto kept = list.front().id;
    list[1] = list.front();
    list[1].id = UUID::random();
    ShortcutStore::shared().importData(encodeShortcuts(list, DocumentLayout::compact));
    remove(1, press("Delete"));
    ASSERT_THAT(shortcuts(), SizeIs(1));
    EXPECT_EQ(shortcuts().front().id, kept);
}

TEST_F(MainWindowActionsTest, ConfirmingRemovesAShortcutThatWasChangedBeforeTheAnswer) {
    remove(0, [&](QWidget& alert) {
        auto changed = shortcuts().front();
        changed.appName = "Changed";
        changed.keyCode = 40;
        ShortcutStore::shared().update(changed);
        press("Delete")(alert);
    });
    EXPECT_THAT(shownNames(), ElementsAre("Browser"));
}

TEST_F(MainWindowActionsTest, CancellingLeavesTheListUntouched) {
    const int writes = desktop.fileManager.writes;
    remove(0, press("Cancel"));
    remove(1, dismiss());
    EXPECT_THAT(shownNames(), ElementsAre("Editor", "Browser"));
    EXPECT_EQ(desktop.fileManager.writes, writes);
}

TEST_F(MainWindowActionsTest, NoButtonActsWhileTheQuestionIsToBeAnswered) {
    remove(1, [&](QWidget& sheet) {
        desktop.log.clear();
        for (QAbstractButton* button : controller->window()->findChildren<QAbstractButton*>()) {
            if (button->window() == controller->window()) {
                button->click(); // as a press over the accessibility bus does
            }
        }
        EXPECT_THAT(desktop.log.calls(), IsEmpty());
        EXPECT_THAT(editors(), IsEmpty());
        EXPECT_THAT(controller->window()->findChildren<QDialog*>(), ElementsAre(&sheet));
        press("Cancel")(sheet);
    });
    EXPECT_THAT(shownNames(), ElementsAre("Editor", "Browser"));
}

TEST_F(MainWindowActionsTest, DeletingAsksInJapanese) {
    Language::setCurrent(Language::japanese);
    remove(1, press("削除"));
    EXPECT_THAT(shown, ElementsAre("sheet warning | 「Browser」のショートカットを削除しますか？ | "
                                   "ショートカットキー: ⌘S | 削除 | キャンセル"));
    EXPECT_THAT(shownNames(), ElementsAre("Editor"));
}

TEST_F(MainWindowActionsTest, AShortcutThatIsGoneBeforeTheAnswerIsNoLoss) {
    const auto id = shortcuts().front().id;
    remove(0, [&](QWidget& alert) {
        ShortcutStore::shared().remove(id);
        press("Delete")(alert);
    });
    EXPECT_THAT(shownNames(), ElementsAre("Browser"));
}

TEST_F(MainWindowActionsTest, AFailedSaveIsNotToldAndTheWindowShowsWhatIsInForce) {
    desktop.fileManager.writeError =
        FakeFileManager::error(std::errc::no_space_on_device, "空き容量がありません");
    remove(0, press("Delete"));
    EXPECT_THAT(shown, SizeIs(1)) << "the question alone";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_THAT(shownNames(), ElementsAre("Browser"));
}

TEST_F(MainWindowActionsTest, ClosuresOfACardOutliveTheControllerAndDoNothing) {
    const auto edit = card(0).onEdit;
    const auto remove = card(0).onDelete;
    controller.reset();
    edit();
    remove();
    EXPECT_THAT(editors(), IsEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_THAT(shortcuts(), SizeIs(2));
}

TEST_F(MainWindowActionsTest, AQuestionCannotBeWrittenBackwards) {
    const std::string override{'\xE2', '\x80', '\xAE'}; // U+202E
    addShortcut(override + "gpj.exe", 2, command);
    settle();
    remove(2, press("Cancel"));
    EXPECT_THAT(shown, ElementsAre(testing::HasSubstr("\"\\u202egpj.exe\"")));
}

TEST_F(MainWindowActionsTest, WithoutAWindowARequestToDeleteIsDropped) {
    const auto remove = card(0).onDelete;
    delete controller->window();
    remove();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_THAT(shortcuts(), SizeIs(2));
}

TEST_F(MainWindowActionsTest, ACardsClosureKeepsTheShortcutThatItShowed) {
    const auto remove = card(0).onDelete;
    auto changed = shortcuts().front();
    changed.appName = "Changed";
    ShortcutStore::shared().update(changed);
    ModalAnswers answers({press("Delete")});
    remove();
    ASSERT_TRUE(eventually([&] { return answers.allGiven(); }));
    settle();
    EXPECT_THAT(answers.shown(), ElementsAre("sheet warning | Delete shortcut for \"Editor\"? | "
                                             "Shortcut key: ⌘A | Delete | Cancel"));
    EXPECT_THAT(shownNames(), ElementsAre("Browser"));
}

} // namespace

} // namespace hollowfernpike::test
