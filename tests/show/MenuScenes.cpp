#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Panel.h"
#include "show/Studio.h"

namespace hollowfernpike::show {

namespace {

constexpr int exportEntry = 1;
constexpr int importEntry = 2;

void takeMenus(Studio& studio, Panel& panel) {
    panel.showsSymbol();
    studio.take("status-item");
    panel.openMenu();
    studio.take("menu");
    panel.openLanguages();
    studio.take("menu-languages");
    panel.closeMenu();
}

void takeExport(Studio& studio, Panel& panel, const std::filesystem::path& file) {
    auto& user = studio.user;
    panel.choose(exportEntry);
    user.enterPath(user.comes(user.titles.exporting), file);
    const auto alert = user.comes(user.titles.alert);
    studio.takeBelowPanel("menu-export-succeeded");
    user.strikeAndLeave(alert, "RTRN");
}

void takeImport(Studio& studio, Panel& panel, const std::filesystem::path& file) {
    auto& user = studio.user;
    panel.choose(importEntry);
    user.enterPath(user.comes(user.titles.importing), file);
    const auto question = user.comes(user.titles.alert);
    user.strikeAndLeave(question, "RTRN");
    const auto alert = user.comes(user.titles.alert, question);
    studio.takeBelowPanel("menu-import-succeeded");
    user.strikeAndLeave(alert, "RTRN");
}

} // namespace

void takeMenu(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    bindKnown(studio);
    Panel panel(studio.story, studio.user, edition.scale);
    studio.start();
    takeMenus(studio, panel);
    const auto file = studio.file("kept.json");
    takeExport(studio, panel, file);
    takeImport(studio, panel, file);
}

} // namespace hollowfernpike::show
