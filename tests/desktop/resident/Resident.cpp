#include "desktop/resident/Resident.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr auto patience = 20s;
const std::string menuInterface = "com.canonical.dbusmenu.";

std::vector<MenuEntry> entriesIn(const std::string& layout) {
    static const std::regex item(R"(\((\d+), (?:@a\{sv\} )?\{([^}]*)\})");
    static const std::regex label(R"('label': <'([^']*)'>)");
    static const std::regex mark(R"('toggle-state': <1>)");
    std::vector<MenuEntry> entries;
    for (std::sregex_iterator found(layout.begin(), layout.end(), item), end; found != end;
         ++found) {
        const std::string properties = (*found)[2];
        std::smatch name;
        std::regex_search(properties, name, label);
        entries.push_back({.id = std::stoi((*found)[1]),
                           .label = name.empty() ? std::string{} : name[1].str(),
                           .isOn = std::regex_search(properties, mark)});
    }
    entries.erase(entries.begin()); // the menu itself
    return entries;
}

} // namespace

ChildProcess& Resident::startHost() {
    panel_.reset(); // the name is free again
    panel_ = story.desktop.start({HFP_STATUS_HOST, "--with-host"});
    if (!panel_->waitForLine("ready", patience)) {
        throw std::runtime_error("the panel did not start: " + panel_->errors());
    }
    return *panel_;
}

ChildProcess& Resident::startTray() {
    panel_.reset();
    panel_ = story.desktop.start({"tint2"});
    return *panel_;
}

testing::AssertionResult Resident::showsItem() {
    const std::string prefix = "item ";
    const auto line = panel_->waitForLine(prefix, patience);
    if (!line) {
        return testing::AssertionFailure() << "no item: " << panel_->output() << panel_->errors();
    }
    item_ = line->substr(prefix.size());
    item_ = item_.substr(0, item_.find('/'));
    return testing::AssertionSuccess();
}

std::vector<MenuEntry> Resident::menu() {
    return entriesIn(bus({item_, "/MenuBar", menuInterface + "GetLayout", "0", "-1", "[]"}));
}

std::vector<std::string> Resident::labels() {
    std::vector<std::string> labels;
    std::ranges::transform(menu(), std::back_inserter(labels), &MenuEntry::label);
    return labels;
}

MenuEntry Resident::entry(const std::string& label) {
    const auto entries = menu();
    const auto found = std::ranges::find(entries, label, &MenuEntry::label);
    if (found == entries.end()) {
        throw std::runtime_error("the menu has no " + label);
    }
    return *found;
}

testing::AssertionResult Resident::becomes(const std::string& label, bool isOn) {
    std::vector<MenuEntry> entries;
    const bool holds = waitUntil(
        [&] {
            entries = menu();
            const auto found = std::ranges::find(entries, label, &MenuEntry::label);
            return found != entries.end() && found->isOn == isOn;
        },
        patience);
    auto result = holds ? testing::AssertionSuccess() : testing::AssertionFailure();
    for (const auto& entry : entries) {
        result << entry.label << (entry.isOn ? " (on), " : ", ");
    }
    return result;
}

void Resident::choose(const std::string& label) {
    bus({item_, "/MenuBar", menuInterface + "Event", std::to_string(entry(label).id), "clicked",
         "<0>", "0"});
}

std::string Resident::call(const std::string& method, const std::vector<std::string>& arguments) {
    std::vector<std::string> line{"app.hollowfernpike.Hollowfernpike",
                                  "/app/hollowfernpike/Hollowfernpike",
                                  "org.freedesktop.Application." + method};
    line.insert(line.end(), arguments.begin(), arguments.end());
    return bus(line);
}

std::unique_ptr<ChildProcess> Resident::startAgain(const std::vector<std::string>& arguments,
                                                   const Environment& changes) {
    auto environment = story.desktop.environment();
    for (const auto& [variable, value] : changes) {
        environment[variable] = value;
    }
    auto line = arguments;
    line.insert(line.begin(), HFP_PROGRAM);
    return std::make_unique<ChildProcess>(line, environment);
}

std::vector<std::string> Resident::titles() {
    std::vector<std::string> titles;
    for (const auto window : windows()) {
        titles.push_back(story.pager.titleOf(window));
    }
    return titles;
}

testing::AssertionResult Resident::shows(const std::string& title) {
    if (waitUntil([&] { return titles() == std::vector{title}; }, patience)) {
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

std::string Resident::contents(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::string Resident::bus(const std::vector<std::string>& arguments) {
    std::vector<std::string> line{"gdbus",      "call",     "--session",  "--timeout",
                                  "20",         "--dest",   arguments[0], "--object-path",
                                  arguments[1], "--method", arguments[2], "--"};
    line.insert(line.end(), arguments.begin() + 3, arguments.end());
    const auto caller = story.desktop.start(line);
    if (caller->wait(patience) != 0) {
        throw std::runtime_error(arguments[2] + ": " + caller->errors());
    }
    return caller->output();
}

std::vector<xcb_window_t> Resident::windows() {
    auto windows = story.pager.stacking();
    std::erase_if(windows, [&](xcb_window_t window) {
        const auto name = story.pager.classOf(window);
        return name != "hollowfernpike" && name != "Hollowfernpike";
    });
    return windows;
}

} // namespace hollowfernpike::test
