#include "ui/editor/ApplicationPanelTest.h"

#include "support/TemporaryDirectory.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QFileSystemModel>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace test;

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

TEST_F(OtherApplicationTest, CancellingReturnsToThePanel) {
    openFiles().reject();
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

} // namespace
} // namespace hollowfernpike
