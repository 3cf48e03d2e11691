#include "ui/ApplicationPanel.h"
#include "ui/Colors.h"
#include "ui/EditorTest.h"

#include "support/TemporaryDirectory.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace test;

class ApplicationPanelTest : public EditorTest {
protected:
    ApplicationPanelTest() {
        for (const std::string name : {"Terminal", "Mail", "Calculator", "Maps"}) {
            install(name);
        }
    }

    void install(const std::string& name) {
        services_.applicationBundles.installed.push_back({.path = "/apps/" + name + ".desktop",
                                                          .bundleIdentifier = "org.example." + name,
                                                          .name = name,
                                                          .genericName = {},
                                                          .keywords = {},
                                                          .icon = {}});
    }

    QDialog& open() {
        window_->show();
        ApplicationPanel::beginSheet(*window_,
                                     [this](const std::string& path) { chosen_.push_back(path); });
        return *window_->findChild<QDialog*>("applicationPanel");
    }

    bool isOpen() const {
        const auto* panel = window_->findChild<QDialog*>("applicationPanel");
        return panel != nullptr && panel->isVisible();
    }

    static void type(QWidget& widget, int key, const QString& text = {}) {
        for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(kind, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(&widget, &event);
        }
    }

    static QLineEdit& searchField(const QDialog& panel) {
        return find<QLineEdit>(panel, "searchField");
    }

    static QListView& list(const QDialog& panel) { return find<QListView>(panel, "list"); }

    static QPushButton& button(const QDialog& panel, const char* name) {
        return find<QPushButton>(panel, name);
    }

    static std::vector<std::string> rows(const QDialog& panel) {
        std::vector<std::string> names;
        const QAbstractItemModel& model = *list(panel).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            names.push_back(model.index(row, 0).data().toString().toStdString());
        }
        return names;
    }

    static std::string current(const QDialog& panel) {
        return list(panel).currentIndex().data().toString().toStdString();
    }

    std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
    std::vector<std::string> chosen_;
};

TEST_F(ApplicationPanelTest, ListsInstalledApplicationsByNameInTheInterfacesLanguage) {
    const QDialog& panel = open();
    EXPECT_THAT(rows(panel), ElementsAre("Calculator", "Mail", "Maps", "Terminal"));
    EXPECT_EQ(services_.applicationBundles.askedLanguage, "ja");
}

TEST_F(ApplicationPanelTest, AsksForEnglishNamesInEnglish) {
    speak(Language::english);
    open();
    EXPECT_EQ(services_.applicationBundles.askedLanguage, "en");
}

TEST_F(ApplicationPanelTest, BelongsToItsWindowAlone) {
    const QDialog& panel = open();
    EXPECT_EQ(panel.windowModality(), Qt::WindowModal);
    EXPECT_EQ(panel.parentWidget(), window_.get());
}

TEST_F(ApplicationPanelTest, BeginsInTheSearchFieldWithTheFirstApplicationSelected) {
    const QDialog& panel = open();
    EXPECT_TRUE(searchField(panel).hasFocus() || panel.focusWidget() == &searchField(panel));
    EXPECT_EQ(current(panel), "Calculator");
}

TEST_F(ApplicationPanelTest, TheHintOfTheSearchCanBeReadWhereTheDesktopForgetsIt) {
    QPalette forgetful = darkPalette();
    forgetful.setColor(QPalette::PlaceholderText, forgetful.color(QPalette::Base));
    const ApplicationPalette application(forgetful);
    const QPalette shown = searchField(open()).palette();
    const QColor ground = shown.color(QPalette::Base);
    EXPECT_GE(contrastRatio(laidOver(shown.color(QPalette::PlaceholderText), ground), ground), 4.5);
}

TEST_F(ApplicationPanelTest, FindsWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_M, "m");
    type(searchField(panel), Qt::Key_A, "a");
    EXPECT_EQ(searchField(panel).text(), "ma");
    EXPECT_THAT(rows(panel), ElementsAre("Mail", "Maps"));
    EXPECT_EQ(current(panel), "Mail");
}

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

TEST_F(ApplicationPanelTest, SaysWhenNothingIsFound) {
    const QDialog& panel = open();
    searchField(panel).setText("nothing of the kind");
    EXPECT_TRUE(find<QLabel>(panel, "emptyLabel").isVisible());
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(), "一致するアプリがありません");
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
    searchField(panel).clear();
    EXPECT_TRUE(list(panel).isVisible());
    EXPECT_TRUE(button(panel, "openButton").isEnabled());
}

TEST_F(ApplicationPanelTest, SaysWhenThereAreNoApplications) {
    services_.applicationBundles.installed.clear();
    const QDialog& panel = open();
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(), "アプリがありません");
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    EXPECT_TRUE(button(panel, "otherButton").isEnabled());
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
}

TEST_F(ApplicationPanelTest, ReadsIconsOnceTheyAreLookedAt) {
    TemporaryDirectory directory;
    const auto file = directory.path() / "icon.png";
    QPixmap red(48, 48);
    red.fill(Qt::red);
    red.save(QString::fromStdString(file.string()));
    services_.applicationBundles.installed.front().icon.imageFile = file.string(); // Terminal
    const QDialog& panel = open();
    const auto icon = [&] {
        return list(panel).model()->index(3, 0).data(Qt::DecorationRole).value<QIcon>();
    };
    const auto shown = [&] {
        return icon().pixmap(QSize(24, 24), 1.0).toImage().pixelColor(12, 12);
    };
    EXPECT_NE(shown(), QColor(Qt::red));
    EXPECT_TRUE(eventually([&] { return shown() == QColor(Qt::red); }));
}

TEST_F(ApplicationPanelTest, IconsOfRowsOutOfSightAreNotReadYet) {
    TemporaryDirectory directory;
    const auto file = directory.path() / "icon.png";
    for (int number = 100; number < 600; ++number) {
        install(std::string("Z").append(std::to_string(number)));
        services_.applicationBundles.installed.back().icon.imageFile = file.string();
    }
    const QDialog& panel = open();
    for (int turns = 0; turns < 10; ++turns) {
        turn();
    }
    QPixmap red(48, 48);
    red.fill(Qt::red);
    red.save(QString::fromStdString(file.string())); // only now can it be read
    const QAbstractItemModel& model = *list(panel).model();
    const auto shown = [&](int row) {
        const auto icon = model.index(row, 0).data(Qt::DecorationRole).value<QIcon>();
        return icon.pixmap(QSize(24, 24), 1.0).toImage().pixelColor(12, 12);
    };
    EXPECT_TRUE(eventually([&] { return shown(model.rowCount() - 1) == QColor(Qt::red); }));
    EXPECT_NE(shown(4), QColor(Qt::red)); // in sight from the first
}

TEST_F(ApplicationPanelTest, LongNamesDoNotWidenTheList) {
    install(std::string(500, 'W'));
    const QDialog& panel = open();
    QListView& view = list(panel);
    EXPECT_LE(view.visualRect(view.model()->index(4, 0)).width(), view.viewport()->width());
}

TEST_F(ApplicationPanelTest, ListsEveryOneOfManyApplications) {
    services_.applicationBundles.installed.clear();
    for (int number = 0; number < 500; ++number) {
        install("Application " + std::to_string(number));
    }
    EXPECT_EQ(rows(open()).size(), 500U);
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

TEST_F(ApplicationPanelTest, EveryControlHasAnAccessibleName) {
    const QDialog& panel = open();
    EXPECT_EQ(searchField(panel).accessibleName(), "検索");
    EXPECT_EQ(list(panel).accessibleName(), "アプリ");
    EXPECT_EQ(searchField(panel).findChild<QToolButton*>()->accessibleName(), "消去");
}

TEST_F(ApplicationPanelTest, TabVisitsFieldListAndButtonsInOrder) {
    const QDialog& panel = open();
    std::vector<std::string> visited;
    for (const QWidget* widget = searchField(panel).nextInFocusChain();
         widget != &searchField(panel); widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisibleTo(&panel)) {
            visited.push_back(widget->objectName().toStdString());
        }
    }
    EXPECT_THAT(visited, ElementsAre("list", "otherButton", "cancelButton", "openButton"));
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
    static void answer(QFileDialog& files, const std::string& path) {
        QApplication::setActiveWindow(&files);
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
    std::ofstream(directory_.path() / "caf\xE9.desktop") << "[Desktop Entry]\n";
    const QFileDialog& files = openFiles();
    const auto* const view = files.findChild<QAbstractItemView*>("listView");
    QStringList names;
    EXPECT_TRUE(eventually([&] {
        names.clear();
        const QModelIndex folder = view->rootIndex();
        for (int row = 0; row < view->model()->rowCount(folder); ++row) {
            names += view->model()->index(row, 0, folder).data().toString();
        }
        return !names.isEmpty();
    }));
    EXPECT_EQ(names, QStringList{"Own.desktop"});
}

TEST_F(OtherApplicationTest, CancellingReturnsToThePanel) {
    openFiles().reject();
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

class ApplicationPanelTexts : public EditorInEachLanguage {};

TEST_P(ApplicationPanelTexts, All) {
    QWidget window;
    window.show();
    ApplicationPanel::beginSheet(window, nullptr);
    const auto& panel = *window.findChild<QDialog*>("applicationPanel");
    const bool english = GetParam() == Language::english;
    EXPECT_EQ(panel.windowTitle(), english ? "Select an App" : "アプリを選択");
    EXPECT_EQ(find<QLineEdit>(panel, "searchField").placeholderText(), english ? "Search" : "検索");
    EXPECT_EQ(find<QPushButton>(panel, "otherButton").text(), english ? "Other..." : "その他...");
    EXPECT_EQ(find<QPushButton>(panel, "cancelButton").text(), english ? "Cancel" : "キャンセル");
    EXPECT_EQ(find<QPushButton>(panel, "openButton").text(), english ? "Open" : "開く");
    EXPECT_EQ(find<QLabel>(panel, "emptyLabel").text(),
              english ? "There are no apps." : "アプリがありません");
}

INSTANTIATE_TEST_SUITE_P(, ApplicationPanelTexts,
                         testing::Values(Language::japanese, Language::english), nameOfLanguage);

} // namespace
} // namespace hollowfernpike
