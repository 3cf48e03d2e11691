#include "platform/qt/GuiSession.h"
#include "platform/qt/MainQueue.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventTaps.h"
#include "support/KeyInjector.h"
#include "ui/editor/EditorSheetTest.h"
#include "ui/parts/Sheets.h"

#include <QPointer>

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace test;

/// Where the display has the window's contents now; the toolkit may be ahead of it.
QRect onScreen(const QWidget& window) {
    auto* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto size = x11::Reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, id), nullptr));
    const auto corner =
        x11::Reply<xcb_translate_coordinates_reply_t>(xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, id, size->root, 0, 0), nullptr));
    return {corner->dst_x, corner->dst_y, size->width, size->height};
}

/// The editor on a display with a window manager and a keyboard; the rest of the desktop is fakes.
class EditorOnDesktopTest : public testing::Test {
protected:
    void TearDown() override {
        if (const auto sheet = sheet_.lock()) {
            sheet->keyRecorder().stopRecording();
            sheet->close();
        }
        EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
    }

    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return session_.runUntil([&] {
            services_.mainQueue.runDue();
            return condition();
        });
    }

    /// Opens the editor as its owner does and waits until it has the keys.
    AddEditShortcutSheet& open(const std::optional<AppShortcut>& editing = std::nullopt) {
        const auto sheet = AddEditShortcutSheet::make(editing);
        sheet_ = sheet;
        sheet->onSave = [this](const AppShortcut& shortcut) { saved_.push_back(shortcut); };
        center(*sheet, *sheet->screen());
        makeKeyAndOrderFront(*sheet);
        waitForKeys(*sheet);
        return *sheet;
    }

    static AppShortcut mailShortcut() {
        return {.id = UUID::random(),
                .keyCode = 46,
                .modifierFlags = 0x100000,
                .appPath = "/Applications/Mail.app",
                .appName = "Mail",
                .appBundleIdentifier = "com.example.mail"};
    }

    bool isOpen() const {
        const auto sheet = sheet_.lock();
        return sheet != nullptr && sheet->isVisible();
    }

    /// Waits until the window has the keys for good. The window manager serves requests in order:
    /// once it has moved the window, it is done with those for the focus, too.
    void waitForKeys(QWidget& window) {
        EXPECT_TRUE(eventually([&] { return window.isActiveWindow(); }));
        const QPoint target = onScreen(window).topLeft() + QPoint(16, 16);
        window.move(window.pos() + QPoint(16, 16));
        EXPECT_TRUE(eventually([&] { return onScreen(window).topLeft() == target; }));
    }

    /// The dialog on the editor, once it has the keys.
    template <class Dialog>
    Dialog& dialogOn(AddEditShortcutSheet& sheet) {
        auto* dialog = sheet.findChild<Dialog*>();
        waitForKeys(*dialog);
        return *dialog;
    }

    /// Installs this application alone and chooses it.
    void choose(AddEditShortcutSheet& sheet, const platform::ApplicationBundle& application) {
        constexpr auto path = "/apps/Only.desktop";
        services_.applicationBundles.bundles[path] = application;
        services_.applicationBundles.installed = {{.path = path,
                                                   .bundleIdentifier = {},
                                                   .name = "Only",
                                                   .genericName = {},
                                                   .keywords = {},
                                                   .icon = {}}};
        sheet.selectApp();
        const QPointer<QDialog> panel(&dialogOn<QDialog>(sheet));
        find<QPushButton>(*panel, "openButton").click();
        EXPECT_TRUE(eventually([&] { return panel == nullptr; }));
    }

    GuiSession session_{"openbox"};
    FakeServices services_;
    KeyInjector keyboard_{session_.desktop().display()};
    std::weak_ptr<AddEditShortcutSheet> sheet_;
    std::vector<AppShortcut> saved_;
};

TEST_F(EditorOnDesktopTest, EscapeCancels) {
    open(mailShortcut());
    keyboard_.strike({"ESC"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorOnDesktopTest, ReturnSaves) {
    open(mailShortcut());
    keyboard_.strike({"RTRN"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
    EXPECT_THAT(saved_, SizeIs(1));
}

TEST_F(EditorOnDesktopTest, EnterOnTheKeypadSaves) {
    open(mailShortcut());
    keyboard_.strike({"KPEN"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
    EXPECT_THAT(saved_, SizeIs(1));
}

TEST_F(EditorOnDesktopTest, ReturnDoesNothingWhileSaveIsDisabled) {
    auto& sheet = open();
    keyboard_.strike({"RTRN"});
    keyboard_.strike({"TAB"}); // arrives after Return
    QWidget* const first = sheet.focusWidget();
    EXPECT_TRUE(eventually([&] { return sheet.focusWidget() != first; }));
    EXPECT_EQ(sheet.findChild<QDialog*>(), nullptr);
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorOnDesktopTest, TabVisitsEveryControlInOrder) {
    auto& sheet = open(mailShortcut());
    const QWidget* const first = sheet.focusWidget();
    std::vector<std::string> visited{first->objectName().toStdString()};
    for (const QWidget* last = first; visited.size() < 6; last = sheet.focusWidget()) {
        keyboard_.strike({"TAB"});
        ASSERT_TRUE(eventually([&] { return sheet.focusWidget() != last; }));
        visited.push_back(sheet.focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(visited, ElementsAre("keyRecorder", "recordButton", "cancelButton", "saveButton",
                                     "selectButton", "keyRecorder"));
}

TEST_F(EditorOnDesktopTest, SaveShowsThatReturnPressesItUnlessAnotherButtonHasTheFocus) {
    auto& sheet = open(mailShortcut());
    const auto& save = find<QPushButton>(sheet, "saveButton");
    EXPECT_TRUE(save.isDefault());
    find<QPushButton>(sheet, "cancelButton").setFocus();
    EXPECT_FALSE(save.isDefault());
    sheet.keyRecorder().setFocus();
    EXPECT_TRUE(save.isDefault());
}

TEST_F(EditorOnDesktopTest, AnAlertTakesReturnForItself) {
    auto& sheet = open(mailShortcut());
    choose(sheet, {.bundleIdentifier = std::nullopt}); // so that Save is refused again and again
    sheet.saveSheet();
    const QPointer<QMessageBox> alert(&dialogOn<QMessageBox>(sheet));
    keyboard_.strike({"RTRN"});
    EXPECT_TRUE(eventually([&] { return alert == nullptr; }));
    waitForKeys(sheet);
    keyboard_.strike({"ESC"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
}

TEST_F(EditorOnDesktopTest, AnAlertTakesEscapeForItself) {
    auto& sheet = open();
    sheet.saveSheet();
    const QPointer<QMessageBox> alert(&dialogOn<QMessageBox>(sheet));
    keyboard_.strike({"ESC"});
    EXPECT_TRUE(eventually([&] { return alert == nullptr; }));
    waitForKeys(sheet);
    EXPECT_TRUE(isOpen());
}

TEST_F(EditorOnDesktopTest, AnApplicationIsChosenWithTheKeyboardAlone) {
    for (const std::string name : {"Mail", "Terminal", "Text"}) {
        services_.applicationBundles.installed.push_back({.path = "/apps/" + name + ".desktop",
                                                          .bundleIdentifier = {},
                                                          .name = name,
                                                          .genericName = {},
                                                          .keywords = {},
                                                          .icon = {}});
    }
    auto& sheet = open();
    keyboard_.strike({"SPCE"});
    EXPECT_TRUE(eventually([&] { return sheet.findChild<QDialog*>() != nullptr; }));
    const QPointer<QDialog> panel(&dialogOn<QDialog>(sheet));
    for (const char* key : {"AD05", "AD03", "DOWN", "RTRN"}) { // te, then the second one
        keyboard_.strike({key});
    }
    EXPECT_TRUE(eventually([&] { return panel == nullptr && sheet.height() == 280; }));
    EXPECT_EQ(find<FittingLabel>(sheet, "step1AppNameLabel").text(), "Text");
    EXPECT_TRUE(isOpen());
}

TEST_F(EditorOnDesktopTest, GrowsWithItsTopEdgeInPlace) {
    auto& sheet = open();
    ASSERT_EQ(sheet.size(), QSize(400, 200));
    const QRect grown(onScreen(sheet).topLeft(), QSize(400, 280));
    choose(sheet, {.bundleIdentifier = "org.example.Mail"});
    EXPECT_TRUE(eventually([&] { return onScreen(sheet).height() == 280; }));
    EXPECT_EQ(onScreen(sheet), grown);
}

/// The same with the keyboard as the display's taps see it.
class RecordingOnDesktopTest : public EditorOnDesktopTest {
protected:
    void SetUp() override { platform::setServices(&withTaps_); }
    void TearDown() override {
        EditorOnDesktopTest::TearDown();
        platform::setServices(&before_);
    }

    KeyRecorderView& record(AddEditShortcutSheet& sheet) {
        find<QPushButton>(sheet, "recordButton").click();
        EXPECT_TRUE(eventually([&] { return sheet.keyRecorder().hasFocus(); }));
        EXPECT_TRUE(sheet.keyRecorder().isRecording());
        return sheet.keyRecorder();
    }

    qt::MainQueue mainQueue_;
    x11::UserTime userTime_;
    x11::EventTaps eventTaps_{mainQueue_, userTime_};
    const platform::Services before_ = platform::services();
    const platform::Services withTaps_{
        .accessibilityTrust = before_.accessibilityTrust,
        .application = before_.application,
        .applicationBundles = before_.applicationBundles,
        .eventTaps = eventTaps_,
        .fileManager = before_.fileManager,
        .loginItem = before_.loginItem,
        .mainQueue = mainQueue_,
        .notificationCenter = before_.notificationCenter,
        .runningApplications = before_.runningApplications,
        .statusBar = before_.statusBar,
        .textComparison = before_.textComparison,
        .userDefaults = before_.userDefaults,
        .windows = before_.windows,
        .workspace = before_.workspace,
        .standardOutput = before_.standardOutput,
    };
};

TEST_F(RecordingOnDesktopTest, ACombinationOnTheKeyboardIsRecorded) {
    auto& sheet = open();
    KeyRecorderView& recorder = record(sheet);
    keyboard_.strike({"LWIN", "LFSH", "AC01"});
    EXPECT_TRUE(eventually([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(recorder.capturedKeyCode(), 0);
    EXPECT_EQ(recorder.capturedModifierFlags(), 0x120000U);
    EXPECT_TRUE(find<QPushButton>(sheet, "saveButton").isEnabled());
}

TEST_F(RecordingOnDesktopTest, EscapeEndsTheRecordingAndCancels) {
    auto& sheet = open();
    const auto recorder = record(sheet).weak_from_this();
    keyboard_.strike({"ESC"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired() && recorder.expired(); }));
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(RecordingOnDesktopTest, ReturnReachesTheWindowWhileRecording) {
    auto& sheet = open(mailShortcut());
    const auto recorder = record(sheet).weak_from_this();
    keyboard_.strike({"RTRN"});
    EXPECT_TRUE(eventually([&] { return sheet_.expired(); }));
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_TRUE(eventually([&] { return recorder.expired(); })) << "it ends with its window";
}

} // namespace
} // namespace hollowfernpike
