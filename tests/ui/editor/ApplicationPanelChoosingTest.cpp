#include "ui/editor/ApplicationPanelTest.h"

#include "support/TemporaryDirectory.h"
#include "ui/parts/FilePanel.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QMouseEvent>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace test;

TEST_F(ApplicationPanelTest, ArrowKeysMoveInTheListWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Down);
    EXPECT_EQ(current(panel), "Maps");
    type(searchField(panel), Qt::Key_Up);
    EXPECT_EQ(current(panel), "Mail");
    type(searchField(panel), Qt::Key_M, "m");
    EXPECT_EQ(searchField(panel).text(), "m");
}

TEST_F(ApplicationPanelTest, PageKeysMoveInTheListWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_PageDown);
    EXPECT_EQ(current(panel), "Terminal");
    type(searchField(panel), Qt::Key_PageUp);
    EXPECT_EQ(current(panel), "Calculator");
}

TEST_F(ApplicationPanelTest, ReturnChooses) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Return);
    EXPECT_THAT(chosen_, ElementsAre("/apps/Mail.desktop"));
    EXPECT_FALSE(isOpen());
}

TEST_F(ApplicationPanelTest, ReturnInTheListChoosesOnce) {
    const QDialog& panel = open();
    type(list(panel), Qt::Key_Down);
    type(list(panel), Qt::Key_Return);
    EXPECT_THAT(chosen_, ElementsAre("/apps/Mail.desktop"));
}

TEST_F(ApplicationPanelTest, OpenChooses) {
    const QDialog& panel = open();
    button(panel, "openButton").click();
    EXPECT_THAT(chosen_, ElementsAre("/apps/Calculator.desktop"));
}

TEST_F(ApplicationPanelTest, ADoubleClickChooses) {
    const QDialog& panel = open();
    QListView& view = list(panel);
    const QPointF point = view.visualRect(view.model()->index(2, 0)).center();
    for (const auto kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        QMouseEvent event(kind, point, view.viewport()->mapToGlobal(point), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    EXPECT_THAT(chosen_, ElementsAre("/apps/Maps.desktop"));
}

TEST_F(ApplicationPanelTest, WhatAssistiveTechnologySelectsIsOpened) {
    const QDialog& panel = open();
    auto* const row = QAccessible::queryAccessibleInterface(&list(panel))->child(2);
    ASSERT_EQ(row->text(QAccessible::Name), "Maps");
    row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    button(panel, "openButton").click();
    EXPECT_THAT(chosen_, ElementsAre("/apps/Maps.desktop"));
}

TEST_F(ApplicationPanelTest, NothingIsOpenedWhileNothingIsSelected) {
    const QDialog& panel = open();
    list(panel).clearSelection();
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
    type(searchField(panel), Qt::Key_Down);
    EXPECT_TRUE(button(panel, "openButton").isEnabled());
}

TEST_F(ApplicationPanelTest, EscapeCancels) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(ApplicationPanelTest, CancelCancels) {
    button(open(), "cancelButton").click();
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(ApplicationPanelTest, IsGoneWhenItsAnswerIsTold) {
    window_->show();
    bool wasOpen = true;
    ApplicationPanel::beginSheet(*window_, [&](const std::string&) { wasOpen = isOpen(); });
    button(*window_->findChild<QDialog*>("applicationPanel"), "openButton").click();
    EXPECT_FALSE(wasOpen);
}

TEST_F(ApplicationPanelTest, IsDestroyedOnceItIsClosed) {
    button(open(), "cancelButton").click();
    EXPECT_TRUE(
        eventually([&] { return window_->findChild<QDialog*>("applicationPanel") == nullptr; }));
}

TEST_F(ApplicationPanelTest, GoesWithItsWindow) {
    open();
    window_.reset();
    turn();
    EXPECT_THAT(chosen_, IsEmpty());
}

class OtherApplicationTest : public ApplicationPanelTest {
protected:
    OtherApplicationTest() {
        std::ofstream(entry()) << "[Desktop Entry]\n";
        services_.applicationBundles.directories = {directory_.path().string(), "/elsewhere"};
    }

    std::filesystem::path entry() const { return directory_.path() / "Own.desktop"; }

    QFileDialog& openFiles() {
        QDialog& panel = open();
        button(panel, "otherButton").click();
        return *panel.findChild<QFileDialog*>();
    }

    /// Types a path and accepts it.
    void answer(QFileDialog& files, const std::string& path) {
        activate(files);
        auto& field = find<QLineEdit>(files, "fileNameEdit");
        field.setFocus();
        field.setText(QString::fromStdString(path));
        QMetaObject::invokeMethod(&files, "accept");
    }

    TemporaryDirectory directory_;
};

TEST_F(OtherApplicationTest, BeginsWhereInstalledApplicationsLie) {
    const QFileDialog& files = openFiles();
    EXPECT_EQ(files.directory().absolutePath().toStdString(), directory_.path().string());
    EXPECT_EQ(files.fileMode(), QFileDialog::ExistingFile);
    EXPECT_TRUE(files.testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(files.windowModality(), Qt::WindowModal);
    EXPECT_THAT(files.nameFilters(), ElementsAre("アプリ (*.desktop)"));
}

TEST_F(OtherApplicationTest, BeginsAtHomeIfThatIsUnknown) {
    services_.applicationBundles.directories.clear();
    EXPECT_EQ(openFiles().directory().absolutePath(), QDir::homePath());
}

TEST_F(OtherApplicationTest, AChosenFileIsTheAnswer) {
    answer(openFiles(), entry().string());
    EXPECT_THAT(chosen_, ElementsAre(entry().string()));
    EXPECT_FALSE(isOpen());
}

TEST_F(OtherApplicationTest, DoesNotLeadPanelsForOtherFilesAway) {
    const auto beginning = [] {
        return FilePanel(FilePanel::Purpose::open, "Lists", ".json").directory().absolutePath();
    };
    const auto before = beginning();
    answer(openFiles(), entry().string());
    EXPECT_EQ(beginning(), before);
}

TEST_F(OtherApplicationTest, AFileOfAnotherKindIsNotTaken) {
    QFileDialog& files = openFiles();
    for (const char* name : {"notes.txt", "desktop", "Own.desktop.bak"}) {
        const auto file = directory_.path() / name;
        std::ofstream(file) << "[Desktop Entry]\n";
        answer(files, file.string());
        EXPECT_TRUE(files.isVisible()) << name;
    }
    answer(files, "/dev/null");
    EXPECT_TRUE(files.isVisible());
    EXPECT_THAT(chosen_, IsEmpty());
    answer(files, entry().string());
    EXPECT_THAT(chosen_, ElementsAre(entry().string())) << "it can still be answered";
}

TEST_F(OtherApplicationTest, AFolderIsEnteredWhateverItsName) {
    const auto folder = directory_.path() / "folder";
    std::filesystem::create_directory(folder);
    QFileDialog& files = openFiles();
    answer(files, folder.string());
    EXPECT_EQ(files.directory().absolutePath().toStdString(), folder.string());
    EXPECT_TRUE(files.isVisible());
    EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(OtherApplicationTest, AFileWhoseNameIsNotUnicodeIsNotOfferedUnderAnotherName) {
    const auto folder =
        directory_.path() / "alone"; // Qt 6.8 hides names that come after such a one
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "caf\xE9.desktop") << "[Desktop Entry]\n";
    services_.applicationBundles.directories = {folder.string()};
    const QFileDialog& files = openFiles();
    bool isRead = false;
    QObject::connect(files.findChild<QFileSystemModel*>(), &QFileSystemModel::directoryLoaded,
                     [&](const QString& path) { isRead = isRead || path == folder.c_str(); });
    ASSERT_TRUE(eventually([&] { return isRead; }));
    const auto* const view = files.findChild<QAbstractItemView*>("listView");
    EXPECT_EQ(view->model()->rowCount(view->rootIndex()), 0);
}

TEST_F(OtherApplicationTest, ApplicationsThatAreFoldersAreAskedForInTheDesktopsOwnPanel) {
    services_.applicationBundles.files = {.extension = ".app", .areFolders = true};
    std::filesystem::create_directory(directory_.path() / "Mail.app");
    QFileDialog& files = openFiles();
    EXPECT_FALSE(files.testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(files.fileMode(), QFileDialog::ExistingFile);
    EXPECT_THAT(files.nameFilters(), ElementsAre("アプリ (*.app)"));
    EXPECT_EQ(files.directory().absolutePath().toStdString(), directory_.path().string());
    Q_EMIT files.fileSelected(QString::fromStdString((directory_.path() / "Mail.app").string()));
    EXPECT_THAT(chosen_, ElementsAre((directory_.path() / "Mail.app").string()));
}

TEST_F(OtherApplicationTest, CancellingReturnsToThePanel) {
    openFiles().reject();
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

} // namespace
} // namespace hollowfernpike
