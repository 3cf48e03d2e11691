#include "show/Managing.h"

#include "desktop/windows/WindowStory.h"
#include "support/WaitUntil.h"

#include <csignal>

namespace hollowfernpike::show {

namespace {

using test::waitUntil;
using Clock = std::chrono::steady_clock;

constexpr int manageEntry = 0;
constexpr auto managedApplication = "Terminal";
constexpr auto windowClass = "XTerm";
constexpr auto first = "⌃⌥T";
constexpr auto second = "⌥⌘T";
const test::Combination firstCombination{17, test::control | test::option};
const test::Combination secondCombination{17, test::option | test::command};

} // namespace

Managing::Managing(std::filesystem::path pictures)
    : studio_(Edition{}, std::move(pictures)), panel_(studio_.story, studio_.user, 1) {}

bool Managing::run() {
    narrator_.heading("Another one, with a panel, for somebody with keyboard and mouse");
    start();
    useMenu();
    add();
    edit();
    exportList();
    remove();
    importList();
    end();
    return narrator_.everythingWasTrue();
}

void Managing::start() {
    studio_.start({{"SHELL", "/bin/sh"}, {"PS1", "$ "}, {"ENV", std::nullopt}});
    panel_.openMenu();
    narrator_.fact("the panel shows the symbol, and a click its menu, in Japanese at first");
    studio_.take("5-menu-ja");
}

void Managing::useMenu() {
    panel_.openLanguages();
    panel_.chooseEnglish();
    studio_.user.titles = test::englishTitles;
    panel_.openMenu();
    studio_.take("6-menu-en");
    panel_.closeMenu();
    openWindow();
    narrator_.fact("the menu switches to English and opens the window");
    studio_.take("7-window-empty");
}

void Managing::add() {
    auto& user = studio_.user;
    const auto editor = user.clickAdd();
    user.choose(editor, managedApplication);
    studio_.take("8-application-chosen");
    user.record(editor, firstCombination);
    studio_.take("9-combination-recorded");
    user.clickSave(editor);
    narrator_.fact(std::string(first) + " is added for " + managedApplication,
                   waitUntil([this] { return list().size() == 1; }));
    studio_.take("10-added");
    press(firstCombination, first);
    studio_.take("11-pressed");
}

void Managing::edit() {
    auto& user = studio_.user;
    openWindow();
    const auto editor = user.clickEdit(0);
    user.record(editor, secondCombination);
    studio_.take("12-edited");
    user.clickSave(editor);
    narrator_.fact(std::string("it is changed to ") + second + ", and " + first + " is free again",
                   studio_.story.isFree(firstCombination));
    press(secondCombination, second);
    added_ = list();
}

void Managing::exportList() {
    openWindow();
    const auto file = studio_.file("kept.json");
    const auto panel = studio_.user.clickExport();
    studio_.take("13-export");
    studio_.user.enterPath(panel, file);
    const bool isWhole = waitUntil([&] { return test::contents(file) == added_; });
    narrator_.fact("the list is exported as it is", isWhole);
}

void Managing::remove() {
    const auto question = studio_.user.clickDelete(0);
    studio_.take("14-delete");
    studio_.user.strikeAndLeave(question, "RTRN");
    narrator_.fact(std::string("it is deleted, and ") + second + " is free",
                   listBecomes(nlohmann::json::array()) && studio_.story.isFree(secondCombination));
    studio_.take("15-deleted");
}

void Managing::importList() {
    auto& user = studio_.user;
    user.enterPath(user.clickImport(), studio_.file("kept.json"));
    const auto question = user.comes(user.titles.alert);
    studio_.take("16-import");
    user.strikeAndLeave(question, "RTRN");
    narrator_.fact("the exported list is imported again", listBecomes(added_));
    studio_.take("17-imported");
    press(secondCombination, second);
}

void Managing::end() {
    auto& utility = studio_.story.utility();
    utility.signal(SIGTERM);
    narrator_.fact("SIGTERM: the utility ended with status 0", utility.wait() == 0);
}

void Managing::openWindow() {
    panel_.choose(manageEntry);
    studio_.user.managementComes();
}

void Managing::press(const test::Combination& combination, const std::string& keys) {
    const bool isLive{studio_.story.isLive(studio_.story.grabOf(combination))};
    const auto begin = Clock::now();
    studio_.story.strike(combination);
    auto& pager = studio_.story.pager;
    const bool isInFront =
        waitUntil([&] { return pager.classOf(pager.activeWindow()) == windowClass; });
    narrator_.fact(keys + ": " + managedApplication + " in front after " +
                       format(Clock::now() - begin),
                   isLive && isInFront);
}

bool Managing::listBecomes(const nlohmann::json& expected) {
    return waitUntil([&] { return list() == expected; });
}

nlohmann::json Managing::list() const {
    return test::contents(studio_.story.shortcutsFile());
}

} // namespace hollowfernpike::show
