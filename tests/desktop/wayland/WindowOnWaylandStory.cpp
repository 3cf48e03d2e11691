#include "desktop/wayland/WindowOnWaylandStory.h"

#include <algorithm>
#include <fstream>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

void WindowOnWaylandStory::startUtility() {
    own_ = story.session().bindOwn();
    story.bind(bound, target);
    story.startUtility();
}

testing::AssertionResult WindowOnWaylandStory::openWindow(const std::string& title) {
    const auto second = story.session().start({story.program()});
    if (second->wait() != 0) {
        return testing::AssertionFailure() << second->errors();
    }
    return isFocused(title);
}

testing::AssertionResult WindowOnWaylandStory::isFocused(const std::string& title) {
    const auto hasFocus = [&](const PagerWindow& window) {
        return window.isFocused && window.title == title;
    };
    if (waitUntil([&] { return std::ranges::any_of(ours(), hasFocus); })) {
        return testing::AssertionSuccess();
    }
    auto failure = testing::AssertionFailure() << title << " has not got the focus; there are:\n";
    for (const auto& window : ours()) {
        failure << window.title << (window.isFocused ? " (focused)" : "") << '\n';
    }
    return failure << story.utilityTells();
}

bool WindowOnWaylandStory::hasWindow(const std::string& title) const {
    return std::ranges::any_of(ours(),
                               [&](const PagerWindow& window) { return window.title == title; });
}

testing::AssertionResult WindowOnWaylandStory::isGone(const std::string& title) {
    return waitUntil([&] { return !hasWindow(title); })
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << title << " is still there";
}

void WindowOnWaylandStory::chooseAfter(int tabs) {
    for (int count = 0; count < tabs; ++count) {
        story.keyboard.strike({"TAB"});
    }
    story.keyboard.strike({"SPCE"});
}

testing::AssertionResult WindowOnWaylandStory::records(std::size_t before) {
    return waitUntil([&] { return recordings() > before; }) ? testing::AssertionSuccess()
                                                            : testing::AssertionFailure()
                                                                  << "it does not record\n"
                                                                  << story.utilityTells();
}

testing::AssertionResult WindowOnWaylandStory::hasRecorded() {
    return waitUntil([&] { return timesTold(recordingEnds) == recordings(); })
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << "it still records\n"
                                             << story.utilityTells();
}

testing::AssertionResult WindowOnWaylandStory::desktopHasItsOwn() {
    auto& session = story.session();
    session.undoOwn();
    const auto carriesItOut = [&] {
        story.strike(own_);
        return waitUntil([&] { return session.hasDoneOwn(); }, 2s);
    };
    const bool hasIt = waitUntil(carriesItOut);
    session.undoOwn();
    return hasIt ? testing::AssertionSuccess()
                 : testing::AssertionFailure() << session.name() << " does not answer";
}

std::vector<Combination> WindowOnWaylandStory::saved() const {
    std::vector<Combination> combinations;
    std::ifstream file(story.shortcutsFile());
    for (const auto& shortcut : nlohmann::json::parse(file)) {
        combinations.push_back({shortcut.at("keyCode"), shortcut.at("modifierFlags")});
    }
    return combinations;
}

std::vector<PagerWindow> WindowOnWaylandStory::ours() const {
    auto windows = story.pager.windows();
    std::erase_if(windows, [](const PagerWindow& window) {
        return window.applicationId != "app.hollowfernpike.Hollowfernpike";
    });
    return windows;
}

std::size_t WindowOnWaylandStory::timesTold(std::string_view line) {
    const auto& text = story.utility().errors();
    std::size_t count = 0;
    for (auto at = text.find(line); at != std::string::npos; at = text.find(line, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace hollowfernpike::test
