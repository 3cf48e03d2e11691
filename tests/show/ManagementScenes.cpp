#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Studio.h"

namespace hollowfernpike::show {

namespace {

void takeEmpty(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    studio.start();
    studio.user.openManagement();
    studio.take("window-empty");
}

void takeUse(Studio& studio) {
    auto& user = studio.user;
    const auto hovered = user.editButton(1);
    user.mouse.moveTo(hovered.x, hovered.y);
    studio.take("window-hover");
    const auto explained = user.exportButton();
    user.mouse.moveTo(explained.x, explained.y);
    user.require([&] { return !user.screen.popups().empty(); }, "no tool tip shows");
    studio.take("window-tooltip");
    user.mouse.moveTo(0, 0);
    user.require([&] { return user.screen.popups().empty(); }, "the tool tip stays");
    studio.story.keyboard.strike({"TAB"});
    studio.take("window-focus");
    const auto question = user.clickDelete(1);
    studio.take("delete");
    user.strikeAndLeave(question, "ESC");
}

void takeThree(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    bindKnown(studio);
    studio.start();
    studio.user.openManagement();
    studio.take("window");
    takeUse(studio);
}

void takeSmallest(Studio& studio, xcb_window_t window) {
    const int width = 400 * studio.edition.scale;
    const int height = 300 * studio.edition.scale;
    auto& screen = studio.user.screen;
    screen.resize(window, width, height);
    studio.user.require([&] { return screen.placeOf(window).height == height; },
                        "the window does not become smaller");
    studio.take("window-smallest");
}

void takeMany(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    studio.bind(longName, {111, test::control | test::option | test::shift | test::command});
    bindKnown(studio);
    studio.bind("NoLongerInstalled", {49, test::control});
    studio.start();
    const auto window = studio.user.openManagement();
    studio.take("window-long-names");
    const auto question = studio.user.clickDelete(0);
    studio.take("delete-long-name");
    studio.user.strikeAndLeave(question, "ESC");
    takeSmallest(studio, window);
}

} // namespace

void takeManagement(const Edition& edition, const std::filesystem::path& folder) {
    takeEmpty(edition, folder);
    takeThree(edition, folder);
    takeMany(edition, folder);
}

} // namespace hollowfernpike::show
