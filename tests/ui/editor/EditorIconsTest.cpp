#include "ui/editor/EditorSheetTest.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/IconView.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::UnorderedElementsAre;
using namespace test;

constexpr auto mailApp = "/Applications/Mail.app";

/// The application's icon in the first step.
class EditorIconsTest : public EditorSheetTest {
protected:
    EditorIconsTest() {
        QIcon::setThemeName("no such theme");
        QIcon::setFallbackThemeName("");
        paint(mailApp, Qt::blue);
        paint(exampleApp, Qt::red);
        paint(brokenApp, Qt::green);
    }

    /// Gives the application an icon of this colour.
    void paint(const std::string& path, Qt::GlobalColor color) {
        const auto file = directory_.path() / (std::to_string(color) + ".png");
        QPixmap pixmap(64, 64);
        pixmap.fill(color);
        ASSERT_TRUE(pixmap.save(QString::fromStdString(file.string())));
        services_.applicationBundles.icons[path] = {.themeName = {}, .imageFile = file.string()};
    }

    /// The picture on the window, as it is painted.
    static QImage shownIcon(AddEditShortcutSheet& sheet) {
        return find<IconView>(sheet, "step1AppIconView").grab().toImage();
    }

    static QColor shownColor(AddEditShortcutSheet& sheet) {
        const QImage image = shownIcon(sheet);
        return image.pixelColor(image.rect().center());
    }

    auto& asked() { return services_.applicationBundles.iconsAsked; }

    TemporaryDirectory directory_;
};

TEST_F(EditorIconsTest, IsThatOfTheEditedApplication) {
    EXPECT_EQ(shownColor(open(mailShortcut())), QColor(Qt::blue));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp));
}

TEST_F(EditorIconsTest, IsThatOfTheChosenApplication) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::red));
    EXPECT_THAT(asked(), UnorderedElementsAre(exampleApp));
}

TEST_F(EditorIconsTest, IsThatOfAnotherApplicationForTheEditedShortcut) {
    auto& sheet = open(mailShortcut());
    choose(sheet, exampleApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::red));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp, exampleApp));
}

TEST_F(EditorIconsTest, IsThatOfTheFileWhereTheApplicationCannotBeOpened) {
    auto& sheet = open(mailShortcut());
    choose(sheet, brokenApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::green));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp, brokenApp));
}

TEST_F(EditorIconsTest, IsTheGenericOneWhereThereIsNone) {
    auto& sheet = open(mailShortcut());
    choose(sheet, namelessApp);
    auto& view = find<IconView>(sheet, "step1AppIconView");
    const QImage shown = shownIcon(sheet);
    view.setIcon(genericApplicationIcon());
    EXPECT_EQ(shown, shownIcon(sheet));
}

TEST_F(EditorIconsTest, StaysWhenThePanelIsCancelled) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(selectApp(sheet), "cancelButton").click();
    turn();
    EXPECT_EQ(shownColor(sheet), QColor(Qt::blue));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp));
}

} // namespace
} // namespace hollowfernpike
