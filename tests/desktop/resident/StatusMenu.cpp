#include "desktop/resident/StatusMenu.h"

#include "support/SessionBus.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <iterator>
#include <regex>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

const std::string menuInterface = "com.canonical.dbusmenu.";

std::vector<MenuEntry> entriesIn(const std::string& layout) {
    static const std::regex item(R"(\((\d+), (?:@a\{sv\} )?\{([^}]*)\})");
    static const std::regex label(R"('label': <'([^']*)'>)");
    static const std::regex radio(R"('toggle-type': <'radio'>)");
    static const std::regex mark(R"('toggle-state': <1>)");
    std::vector<MenuEntry> entries;
    for (std::sregex_iterator found(layout.begin(), layout.end(), item), end; found != end;
         ++found) {
        const std::string properties = (*found)[2];
        std::smatch name;
        std::regex_search(properties, name, label);
        MenuEntry entry{.id = std::stoi((*found)[1]),
                        .label = name.empty() ? std::string{} : name[1].str(),
                        .isOn = std::regex_search(properties, mark),
                        .isRadio = std::regex_search(properties, radio)};
        if (const auto mnemonic = entry.label.find('_'); mnemonic != std::string::npos) {
            entry.mnemonic = entry.label.substr(mnemonic + 1, 1);
            entry.label.erase(mnemonic, 1);
        }
        entries.push_back(std::move(entry));
    }
    entries.erase(entries.begin()); // the menu itself
    return entries;
}

} // namespace

ChildProcess& StatusMenu::startHost() {
    panel_.reset(); // the name is free again
    panel_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{HFP_STATUS_HOST, "--with-host"}, environment_);
    if (!panel_->waitForLine("ready")) {
        throw std::runtime_error("the panel did not start: " + panel_->errors());
    }
    return *panel_;
}

ChildProcess& StatusMenu::startTray() {
    panel_.reset();
    panel_ = std::make_unique<ChildProcess>(std::vector<std::string>{"tint2"}, environment_);
    return *panel_;
}

testing::AssertionResult StatusMenu::showsItem() {
    const std::string prefix = "item ";
    const auto line = panel_->waitForLine(prefix);
    if (!line) {
        return testing::AssertionFailure() << "no item: " << panel_->output() << panel_->errors();
    }
    item_ = line->substr(prefix.size());
    item_ = item_.substr(0, item_.find('/'));
    return testing::AssertionSuccess();
}

std::vector<MenuEntry> StatusMenu::entries() {
    return entriesIn(
        callOnBus(environment_, {item_, "/MenuBar", menuInterface + "GetLayout", "0", "-1", "[]"}));
}

std::vector<std::string> StatusMenu::labels() {
    std::vector<std::string> labels;
    std::ranges::transform(entries(), std::back_inserter(labels), &MenuEntry::label);
    return labels;
}

MenuEntry StatusMenu::entry(const std::string& label) {
    const auto shown = entries();
    const auto found = std::ranges::find(shown, label, &MenuEntry::label);
    if (found == shown.end()) {
        throw std::runtime_error("the menu has no " + label);
    }
    return *found;
}

testing::AssertionResult StatusMenu::becomes(const std::string& label, bool isOn) {
    std::vector<MenuEntry> shown;
    const bool holds = waitUntil([&] {
        shown = entries();
        const auto found = std::ranges::find(shown, label, &MenuEntry::label);
        return found != shown.end() && found->isOn == isOn;
    });
    auto result = holds ? testing::AssertionSuccess() : testing::AssertionFailure();
    for (const auto& entry : shown) {
        result << entry.label << (entry.isOn ? " (on), " : ", ");
    }
    return result;
}

void StatusMenu::choose(const std::string& label) {
    callOnBus(environment_, {item_, "/MenuBar", menuInterface + "Event",
                             std::to_string(entry(label).id), "clicked", "<0>", "0"});
}

} // namespace hollowfernpike::test
