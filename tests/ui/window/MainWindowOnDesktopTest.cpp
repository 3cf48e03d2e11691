#include "platform/qt/GuiSession.h"
#include "platform/qt/Pointer.h"
#include "platform/x11/DesktopObserver.h"
#include "support/KeyInjector.h"
#include "ui/Colors.h"
#include "ui/editor/AddEditShortcutSheet.h"
#include "ui/window/WholeBadge.h"
#include "ui/window/WindowTest.h"

#include <QScrollArea>
#include <QScrollBar>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;

/// The management window on a display with a window manager, a keyboard and a mouse; the rest of
/// the desktop is fakes.
class MainWindowOnDesktopTest : public testing::Test {
protected:
    MainWindowOnDesktopTest() {
        desktop_.userDefaults.own["AppLanguage"] = std::string("en");
        addShortcut("Editor", 0, command);
        addShortcut("Browser", 1, command);
    }

    MainWindowController& open() {
        controller_.emplace();
        controller_->showWindow();
        EXPECT_TRUE(session_.runUntil([&] { return hasTheKeys(); }));
        return *controller_;
    }

    bool hasTheKeys() {
        return controller_->window()->isActiveWindow() && observer_.isFocused(id());
    }

    xcb_window_t id() const { return static_cast<xcb_window_t>(controller_->window()->winId()); }

    ShortcutCardView& card(std::size_t index) const {
        return *controller_->stackView()->cards().at(index);
    }

    /// Waits for the dialog on the window, if there is to be one, to have the keys.
    QWidget* sheet() {
        EXPECT_TRUE(session_.runUntil([] {
            const QWidget* modal = QApplication::activeModalWidget();
            return modal != nullptr && modal->isActiveWindow();
        }));
        return QApplication::activeModalWidget();
    }

    static std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
            names.push_back(shortcut.appName);
        }
        return names;
    }

    GuiSession session_{"openbox"};
    FakeServices desktop_;
    DesktopObserver observer_{session_.desktop().display()};
    KeyInjector keyboard_{session_.desktop().display()};
    Pointer mouse_{session_.desktop().display()};
    std::optional<MainWindowController> controller_;
};

TEST_F(MainWindowOnDesktopTest, ControlAndWCloseTheWindowAndItComesBackTheSame) {
    const auto* window = open().window();
    keyboard_.strike({"LCTL", "AD02"});
    ASSERT_TRUE(session_.runUntil([&] { return !window->isVisible(); }));
    controller_->showWindow();
    EXPECT_EQ(controller_->window(), window);
    EXPECT_TRUE(session_.runUntil([&] { return hasTheKeys(); }));
}

TEST_F(MainWindowOnDesktopTest, AMinimizedWindowIsBroughtBackWithTheKeys) {
    open();
    observer_.minimise(id());
    ASSERT_TRUE(
        session_.runUntil([&] { return controller_->window()->isMinimized() && !hasTheKeys(); }));
    controller_->showWindow();
    EXPECT_TRUE(
        session_.runUntil([&] { return !controller_->window()->isMinimized() && hasTheKeys(); }));
}

TEST_F(MainWindowOnDesktopTest, EscapeDoesNoHarmAndTabGoesOn) {
    open();
    keyboard_.strike({"ESC"});
    keyboard_.strike({"TAB"});
    EXPECT_TRUE(session_.runUntil([&] { return card(0).hasFocus(); }));
    EXPECT_TRUE(controller_->window()->isVisible());
}

TEST_F(MainWindowOnDesktopTest, TheSpaceBarOnThePencilOfACardOpensItsEditor) {
    open();
    keyboard_.strike({"TAB"});
    keyboard_.strike({"TAB"});
    keyboard_.strike({"SPCE"});
    AddEditShortcutSheet* editor = nullptr;
    EXPECT_TRUE(session_.runUntil([&] {
        editor = dynamic_cast<AddEditShortcutSheet*>(QApplication::activeWindow());
        return editor != nullptr;
    }));
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->windowTitle(), "Edit Shortcut");
    const QPointer<AddEditShortcutSheet> watched = editor;
    editor->cancelSheet();
    EXPECT_TRUE(session_.runUntil([&] {
        desktop_.mainQueue.runDue();
        return watched == nullptr;
    }));
}

TEST_F(MainWindowOnDesktopTest, AClickOnTheTrashAndReturnDelete) {
    open();
    const QPoint trash = card(0).deleteButton().mapToGlobal(QPoint(14, 14));
    mouse_.click(trash.x(), trash.y());
    ASSERT_NE(sheet(), nullptr);
    keyboard_.strike({"RTRN"});
    EXPECT_TRUE(session_.runUntil([&] { return names() == std::vector<std::string>{"Browser"}; }));
    EXPECT_TRUE(session_.runUntil([&] { return hasTheKeys(); }));
}

TEST_F(MainWindowOnDesktopTest, EscapeAtTheQuestionKeepsTheShortcut) {
    open();
    card(0).deleteButton().click();
    ASSERT_NE(sheet(), nullptr);
    keyboard_.strike({"ESC"});
    EXPECT_TRUE(session_.runUntil([&] { return hasTheKeys(); }));
    EXPECT_THAT(names(), ElementsAre("Editor", "Browser"));
}

TEST_F(MainWindowOnDesktopTest, AfterADeletionByKeyboardTheFocusIsStillInTheList) {
    open();
    for (int step = 0; step < 3; ++step) {
        keyboard_.strike({"TAB"});
    }
    ASSERT_TRUE(session_.runUntil([&] { return card(0).deleteButton().hasFocus(); }));
    keyboard_.strike({"SPCE"});
    ASSERT_NE(sheet(), nullptr);
    keyboard_.strike({"RTRN"});
    EXPECT_TRUE(session_.runUntil(
        [&] { return names().size() == 1 && card(0).deleteButton().hasFocus(); }));
}

TEST_F(MainWindowOnDesktopTest, ThePageKeysScrollTheList) {
    for (std::uint16_t key = 2; key < 40; ++key) {
        addShortcut("Application", key, command);
    }
    open();
    const auto* scroller = controller_->scrollView()->verticalScrollBar();
    keyboard_.strike({"TAB"});
    keyboard_.strike({"PGDN"});
    EXPECT_TRUE(session_.runUntil([&] { return scroller->value() > 200; }));
    keyboard_.strike({"PGUP"});
    EXPECT_TRUE(session_.runUntil([&] { return scroller->value() == 0; }));
}

/// Everything has two device pixels to the point.
struct TwiceTheScale {
    TwiceTheScale() { qputenv("QT_SCALE_FACTOR", "2"); }
};

class MainWindowAtTwiceTheScale : private TwiceTheScale, public MainWindowOnDesktopTest {};

TEST_F(MainWindowAtTwiceTheScale, HairlinesAreSharp) {
    const ApplicationPalette colors(lightPalette());
    open();
    const QImage image = card(0).grab().toImage();
    ASSERT_EQ(image.devicePixelRatio(), 2);
    ASSERT_EQ(image.height(), 104);
    const QColor base = lightPalette().color(QPalette::Base);
    EXPECT_EQ(image.pixelColor(0, 52), image.pixelColor(1, 52));
    EXPECT_NE(image.pixelColor(1, 52), base);
    EXPECT_EQ(image.pixelColor(2, 52), base);
}

TEST_F(MainWindowAtTwiceTheScale, BadgesShowTheirWholeTexts) {
    for (const auto* language : {"ja", "en"}) {
        desktop_.userDefaults.own["AppLanguage"] = std::string(language);
        ShortcutStore::shared().importData("[]");
        addShortcut("Editor", 51, modifierMask);
        addShortcut(std::string(300, 'W'), 65535, modifierMask);
        open();
        for (ShortcutCardView* card : controller_->stackView()->cards()) {
            ASSERT_EQ(card->devicePixelRatio(), 2);
            EXPECT_TRUE(showsItsWholeText(card->hotkeyBadge())) << language;
        }
    }
}

TEST_F(MainWindowAtTwiceTheScale, SymbolsAreDrawnAtThatSize) {
    open();
    const QImage button = controller_->importButton()->grab().toImage();
    const QImage symbol =
        symbolImage(Symbol::squareAndArrowDown).pixmap(QSize(20, 20), 2.0).toImage();
    ASSERT_EQ(symbol.size(), QSize(40, 40));
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            const QColor drawn =
                laidOver(symbol.pixelColor(x, y), QGuiApplication::palette().window().color());
            ASSERT_NEAR(button.pixelColor(8 + x, 8 + y).lightness(), drawn.lightness(), 2)
                << x << ' ' << y;
        }
    }
}

} // namespace

} // namespace hollowfernpike::test
