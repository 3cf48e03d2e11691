#include "desktop/resident/Resident.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <fstream>

namespace hollowfernpike::test {

std::string Resident::call(const std::string& method, const std::vector<std::string>& arguments) {
    std::vector<std::string> line{"app.hollowfernpike.Hollowfernpike",
                                  "/app/hollowfernpike/Hollowfernpike",
                                  "org.freedesktop.Application." + method};
    line.insert(line.end(), arguments.begin(), arguments.end());
    return callOnBus(story.desktop, line);
}

std::unique_ptr<ChildProcess> Resident::startAgain(const std::vector<std::string>& arguments,
                                                   const Environment& changes) {
    auto line = arguments;
    line.insert(line.begin(), HFP_PROGRAM);
    return story.desktop.start(line, changes);
}

std::vector<std::string> Resident::titles() {
    std::vector<std::string> titles;
    for (const auto window : windows()) {
        titles.push_back(story.pager.titleOf(window));
    }
    return titles;
}

testing::AssertionResult Resident::shows(const std::string& title) {
    if (waitUntil([&] { return titles() == std::vector{title}; })) {
        return testing::AssertionSuccess();
    }
    auto result = testing::AssertionFailure();
    for (const auto& other : titles()) {
        result << '"' << other << "\" ";
    }
    return result;
}

xcb_window_t Resident::window() {
    return windows().at(0);
}

std::filesystem::path Resident::configuration(const std::string& name) const {
    return story.desktop.home() / ".config" / name;
}

std::vector<xcb_window_t> Resident::windows() {
    auto windows = story.pager.stacking();
    std::erase_if(windows, [&](xcb_window_t window) {
        const auto name = story.pager.classOf(window);
        return name != "hollowfernpike" && name != "Hollowfernpike";
    });
    return windows;
}

void ResidentTest::start() {
    story.bind(bound, story.install("Target"));
    story.startUtility();
}

void ResidentTest::startOnHost() {
    menu.startHost();
    start();
    ASSERT_TRUE(menu.showsItem()) << story.utility().errors();
}

} // namespace hollowfernpike::test
