#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Studio.h"

#include <fstream>

namespace hollowfernpike::show {

namespace {

constexpr auto unwritable = "/nowhere/shortcuts.json";

void takeExport(Studio& studio) {
    auto& user = studio.user;
    const auto panel = user.clickExport();
    studio.take("export");
    user.enterPath(panel, unwritable);
    const auto alert = user.comes(user.titles.alert);
    studio.take("export-failed");
    user.strikeAndLeave(alert, "RTRN");
}

void takeImport(Studio& studio, const std::filesystem::path& file) {
    auto& user = studio.user;
    const auto panel = user.clickImport();
    studio.take("import");
    user.enterPath(panel, file);
    const auto question = user.comes(user.titles.alert);
    studio.take("import-question");
    user.strikeAndLeave(question, "RTRN");
    const auto alert = user.comes(user.titles.alert, question);
    studio.take("import-invalid");
    user.strikeAndLeave(alert, "RTRN");
}

void takeUnreadable(Studio& studio) {
    auto& user = studio.user;
    const auto file = studio.file("damaged.json");
    std::filesystem::create_symlink("/proc/self/mem", file); // fails to be read, even by root
    user.enterPath(user.clickImport(), file);
    const auto alert = user.comes(user.titles.alert);
    studio.take("import-unreadable");
    user.strikeAndLeave(alert, "RTRN");
}

} // namespace

void takeExchange(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    bindKnown(studio);
    const auto file = studio.file("broken.json");
    std::ofstream(file) << R"([{"id": "no identifier"}])";
    studio.start();
    studio.user.openManagement();
    takeExport(studio);
    takeImport(studio, file);
    takeUnreadable(studio);
}

} // namespace hollowfernpike::show
