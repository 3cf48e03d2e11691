#include "desktop/wlroots/WlrootsSession.h"

#include "desktop/windows/WindowTitles.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace hollowfernpike::test {

namespace {

/// For `bound`, `another` and `third`, written in different ways.
std::vector<KeyCommand> keyCommands() {
    return {{"C-A-l", "Control+Mod1+46", "--press '⌃⌥L'"},
            {"C-A-j", "Control+Mod1+44", "--press Alt+control+j"},
            {"S-W-k", "Shift+Mod4+45", "--press 'cmd + shift + Key(40)'"}};
}

[[noreturn]] void failWithoutOwnCombination() {
    throw std::logic_error("the compositor has no combination of its own");
}

} // namespace

WlrootsSession::WlrootsSession(WlrootsCompositor kind, const KeyboardLayout& layout)
    : SessionOn(kind, HFP_PROGRAM, keyCommands()), keys(desktop.waylandSocket(), layout) {}

std::string WlrootsSession::name() const {
    return desktop.kind() == WlrootsCompositor::labwc ? "labwc" : "a sway that nobody is told of";
}

// It tells the lines for the configuration, because they were not copied from it before.
void WlrootsSession::closeWelcome() {
    const std::string title{japaneseTitles.alert};
    const auto isShown = [&] {
        const auto windows = toplevels.windows();
        return std::ranges::find(windows, title, &PagerWindow::title) != windows.end();
    };
    const auto goes = [&] {
        toplevels.closeTitled(title);
        return waitUntil([&] { return !isShown(); });
    };
    if (!waitUntil(isShown) || !goes()) {
        throw std::runtime_error("the lines for the configuration do not come or do not go");
    }
}

Combination WlrootsSession::bindOwn() {
    failWithoutOwnCombination();
}

bool WlrootsSession::hasDoneOwn() const {
    failWithoutOwnCombination();
}

void WlrootsSession::undoOwn() {
    failWithoutOwnCombination();
}

} // namespace hollowfernpike::test
