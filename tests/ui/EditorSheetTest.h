#pragma once

#include "ui/AddEditShortcutSheet.h"
#include "ui/ApplicationPanel.h"
#include "ui/EditorTest.h"
#include "ui/FittingLabel.h"
#include "ui/KeyRecorderView.h"

#include <QListView>
#include <QMessageBox>
#include <QPushButton>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// For tests of the editor on screen, and of what it hands to its owner.
template <class Base>
class WithEditorSheet : public Base {
protected:
    static AppShortcut mailShortcut() {
        return {.id = UUID::parse("6F9619FF-8B86-D011-B42D-00C04FC964FF").value(),
                .keyCode = 46,
                .modifierFlags = 0x110000, // with Caps Lock, as a file may have it
                .appPath = "/Applications/Mail.app",
                .appName = "Post",
                .appBundleIdentifier = "com.example.mail"};
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

    /// Chooses an application in the panel, as the user does.
    void choose(AddEditShortcutSheet& sheet, const std::string& path) {
        this->services_.applicationBundles.installed = {{.path = path,
                                                         .bundleIdentifier = {},
                                                         .name = path,
                                                         .genericName = {},
                                                         .keywords = {},
                                                         .icon = {}}};
        find<QPushButton>(sheet, "selectButton").click();
        auto* panel = sheet.template findChild<QDialog*>("applicationPanel");
        ASSERT_NE(panel, nullptr);
        find<QPushButton>(*panel, "openButton").click();
        this->turn();
    }

    void record(AddEditShortcutSheet& sheet, std::uint16_t keyCode, std::uint64_t flags) {
        sheet.keyRecorder().toggleRecording();
        this->services_.eventTaps.tap()->press(keyCode, flags);
        this->services_.mainQueue.runDue();
    }

    static QMessageBox* alertOn(AddEditShortcutSheet& sheet) {
        return sheet.template findChild<QMessageBox*>();
    }

    std::weak_ptr<AddEditShortcutSheet> sheet_;
    std::vector<AppShortcut> saved_;
};

} // namespace hollowfernpike::test
