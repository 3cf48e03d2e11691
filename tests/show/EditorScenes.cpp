#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Studio.h"
#include "show/Typing.h"
#include "support/WriteFile.h"

namespace hollowfernpike::show {

namespace {

const test::Combination toRecord{17, test::control | test::option};

void takeApplications(Studio& studio, xcb_window_t editor) {
    auto& user = studio.user;
    auto& keyboard = studio.story.keyboard;
    const auto panel = user.openApplications(editor);
    studio.take("applications");
    type(keyboard, "te");
    studio.take("applications-found");
    type(keyboard, "qq");
    studio.take("applications-nothing-found");
    user.strikeAndLeave(panel, "ESC");
}

void takeRecording(Studio& studio, xcb_window_t editor) {
    auto& user = studio.user;
    user.startRecording(editor);
    studio.take("editor-recording");
    studio.story.strike(test::bareLetter);
    studio.take("editor-modifier-missing");
    studio.story.strike(toRecord);
    user.finishRecording(editor);
    studio.take("editor-recorded");
    user.clickSave(editor);
}

void takeAdding(Studio& studio) {
    auto& user = studio.user;
    const auto editor = user.clickAdd();
    studio.take("editor-step-1");
    takeApplications(studio, editor);
    user.choose(editor, "Terminal");
    studio.take("editor-chosen");
    takeRecording(studio, editor);
}

/// A file that is no entry has no identifier.
void takeUnidentified(Studio& studio, xcb_window_t editor) {
    auto& user = studio.user;
    auto& keyboard = studio.story.keyboard;
    const auto entry = studio.file("elsewhere.desktop");
    test::writeFile(entry, "no entry at all");
    const auto panel = user.openApplications(editor);
    for (const char* key : {"TAB", "TAB", "SPCE"}) {
        keyboard.strike({key});
    }
    const auto files = user.comes(user.titles.applications, panel);
    studio.take("applications-other");
    user.enterPath(files, entry);
    user.comes(user.titles.adding);
    user.record(editor, {8, test::command});
    keyboard.strike({"RTRN"});
    const auto alert = user.comes(user.titles.alert);
    studio.take("editor-application-missing");
    user.strikeAndLeave(alert, "RTRN");
    user.strikeAndLeave(editor, "ESC");
}

void takeEditing(Studio& studio) {
    auto& user = studio.user;
    auto editor = user.clickEdit(0);
    studio.take("editor-edit");
    user.choose(editor, "Quarterly");
    studio.take("editor-long-name");
    user.strikeAndLeave(editor, "ESC");
}

} // namespace

void takeEditor(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    studio.start();
    studio.user.openManagement();
    takeAdding(studio);
    takeEditing(studio);
    takeUnidentified(studio, studio.user.clickAdd());
}

} // namespace hollowfernpike::show
