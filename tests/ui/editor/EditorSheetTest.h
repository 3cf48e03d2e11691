#pragma once

#include "ui/editor/AddEditShortcutSheet.h"
#include "ui/editor/ApplicationPanel.h"
#include "ui/editor/EditorTest.h"
#include "ui/editor/KeyRecorderView.h"
#include "ui/parts/Labels.h"

#include <QListView>
#include <QMessageBox>
#include <QPushButton>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

inline constexpr auto exampleApp = "/Applications/Example.app";
inline constexpr auto namelessApp = "/Applications/Nameless.app"; ///< has no identifier
inline constexpr auto brokenApp = "/tmp/Broken.app";              ///< cannot be opened

/// For tests of the editor on screen, and of what it hands to its owner. Whatever is still open in
/// the end is closed.
template <class Base>
class WithEditorSheet : public Base {
protected:
    WithEditorSheet() {
        this->services_.applicationBundles.bundles[exampleApp] = {"com.example.example"};
        this->services_.applicationBundles.bundles[namelessApp] = {std::nullopt};
    }

    void TearDown() override {
        if (const auto sheet = sheet_.lock()) {
            sheet->close();
        }
        Base::TearDown();
    }

    static AppShortcut mailShortcut() {
        return {.id = UUID::parse("6F9619FF-8B86-D011-B42D-00C04FC964FF").value(),
                .keyCode = 46,
                .modifierFlags = 0x110000, // with Caps Lock, as a file may have it
                .appPath = "/Applications/Mail.app",
                .appName = "Post",
                .appBundleIdentifier = "com.example.mail"};
    }

    /// The mail shortcut for another application.
    static AppShortcut mailShortcutFor(const std::string& path, const std::string& name,
                                       const std::string& identifier) {
        auto shortcut = mailShortcut();
        shortcut.appPath = path;
        shortcut.appName = name;
        shortcut.appBundleIdentifier = identifier;
        return shortcut;
    }

    /// The mail shortcut on another combination.
    static AppShortcut mailShortcutOn(std::uint16_t keyCode, std::uint64_t modifierFlags) {
        auto shortcut = mailShortcut();
        shortcut.keyCode = keyCode;
        shortcut.modifierFlags = modifierFlags;
        return shortcut;
    }

    /// Shows the editor and keeps no hold on it.
    AddEditShortcutSheet& open(const std::optional<AppShortcut>& editing = std::nullopt) {
        const auto sheet = AddEditShortcutSheet::make(editing);
        sheet_ = sheet;
        sheet->onSave = [this](const AppShortcut& shortcut) { saved_.push_back(shortcut); };
        sheet->show();
        return *sheet;
    }

    bool isOpen() const {
        const auto sheet = sheet_.lock();
        return sheet != nullptr && sheet->isVisible();
    }

    static QPushButton& saveButton(AddEditShortcutSheet& sheet) {
        return find<QPushButton>(sheet, "saveButton");
    }

    static QString shownName(AddEditShortcutSheet& sheet) {
        return find<FittingLabel>(sheet, "step1AppNameLabel").text();
    }

    /// Opens the panel for applications.
    QDialog& selectApp(AddEditShortcutSheet& sheet) {
        find<QPushButton>(sheet, "selectButton").click();
        return find<QDialog>(sheet, "applicationPanel");
    }

    /// Chooses an application in the panel, as the user does.
    void choose(AddEditShortcutSheet& sheet, const std::string& path) {
        this->services_.applicationBundles.installed = {{.path = path,
                                                         .bundleIdentifier = {},
                                                         .name = path,
                                                         .genericName = {},
                                                         .keywords = {},
                                                         .icon = {}}};
        find<QPushButton>(selectApp(sheet), "openButton").click();
        this->turn();
    }

    void record(AddEditShortcutSheet& sheet, std::uint16_t keyCode, std::uint64_t flags) {
        sheet.keyRecorder().toggleRecording();
        strike(keyCode, flags);
    }

    /// Presses a key while the editor records.
    void strike(std::uint16_t keyCode, std::uint64_t flags) {
        this->services_.eventTaps.tap()->press(keyCode, flags);
        this->services_.mainQueue.runDue();
    }

    static QMessageBox* alertOn(AddEditShortcutSheet& sheet) {
        return sheet.template findChild<QMessageBox*>();
    }

    /// Expects exactly one saved shortcut, the same as this one in every field.
    void expectSaved(const AppShortcut& expected) {
        ASSERT_EQ(saved_.size(), 1U);
        EXPECT_EQ(saved_[0].id, expected.id);
        EXPECT_EQ(saved_[0].keyCode, expected.keyCode);
        EXPECT_EQ(saved_[0].modifierFlags, expected.modifierFlags);
        EXPECT_EQ(saved_[0].appPath, expected.appPath);
        EXPECT_EQ(saved_[0].appName, expected.appName);
        EXPECT_EQ(saved_[0].appBundleIdentifier, expected.appBundleIdentifier);
    }

    /// A new shortcut for the example application.
    void expectExampleSaved(std::uint16_t keyCode, std::uint64_t modifierFlags) {
        ASSERT_EQ(saved_.size(), 1U);
        expectSaved({.id = saved_[0].id,
                     .keyCode = keyCode,
                     .modifierFlags = modifierFlags,
                     .appPath = exampleApp,
                     .appName = "Example",
                     .appBundleIdentifier = "com.example.example"});
    }

    std::weak_ptr<AddEditShortcutSheet> sheet_;
    std::vector<AppShortcut> saved_;
};

using EditorSheetTest = WithEditorSheet<EditorTest>;

} // namespace hollowfernpike::test
