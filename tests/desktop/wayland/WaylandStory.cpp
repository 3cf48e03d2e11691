#include "desktop/wayland/WaylandStory.h"

#include "support/Leaks.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

/// Whether the application's log says that one of its windows has the keys.
bool saysThatItHasKeys(const std::vector<std::string>& log) {
    bool hasThem = false;
    for (const auto& line : log) {
        hasThem = line.starts_with("focus-in ") || (hasThem && !line.starts_with("focus-out "));
    }
    return hasThem;
}

} // namespace

WaylandStory::WaylandStory(std::unique_ptr<WaylandSession> place)
    : WaylandStage(std::move(place)), keyboard(session().keyboard()), pager(session().pager()) {}

ChildProcess& WaylandStory::launchUtility(const Environment& changes) {
    Environment environment{{"QT_LOGGING_RULES", "hollowfernpike.keys.debug=true"}, leaksAllowed()};
    return utility_.start(session(), changed(environment, changes), {program()});
}

Environment WaylandStory::leaksReported() const {
    return test::leaksReported(session().lend(HFP_KNOWN_LEAKS));
}

void WaylandStory::use(const KeyboardLayout& layout) {
    settleLayouts([&] { keyboard.use(layout); });
}

void WaylandStory::lockGroup(std::uint32_t group) {
    settleLayouts([&] { keyboard.lockGroup(group); });
}

void WaylandStory::settleLayouts(const std::function<void()>& change) {
    const bool isAwaited = session().bindsSymbols() && utility_.isRunning();
    const auto before = isAwaited ? bindings() : 0;
    change();
    if (!isAwaited) {
        return;
    }
    if (const auto live = bindsAgain(before); !live) {
        throw std::runtime_error(live.message());
    }
}

std::size_t WaylandStory::bindings() {
    const auto& text = utility().errors();
    std::size_t count = 0;
    constexpr std::string_view beginning = " bound ";
    constexpr std::string_view end = " combinations\n";
    for (auto at = text.find(beginning); at != std::string::npos; at = text.find(beginning, at)) {
        at += beginning.size();
        const auto afterNumber = text.find_first_not_of("0123456789", at);
        count += afterNumber != at && afterNumber != std::string::npos &&
                         text.compare(afterNumber, end.size(), end) == 0
                     ? 1
                     : 0;
    }
    return count;
}

testing::AssertionResult WaylandStory::bindsAgain(std::size_t before) {
    bool hasEnded = false;
    const auto isDecided = [&] { return bindings() > before || (hasEnded = utility().hasEnded()); };
    if (waitUntil(isDecided) && bindings() > before) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << (hasEnded ? "the utility has ended\n" : "the combinations are not bound\n")
           << utilityTells();
}

bool WaylandStory::hasKeys(const Application& application) {
    const auto copies = application.copies();
    return std::ranges::find(copies, pager.focusedProcess()) != copies.end() &&
           saysThatItHasKeys(application.log());
}

void WaylandStory::activate(const Application& application) {
    for (const auto process : application.copies()) {
        if (pager.windowOf(process)) {
            pager.focus(process);
        }
    }
}

std::string WaylandStory::windowsTold() {
    auto text = session().name() + ":\n";
    for (const auto& window : pager.windows()) {
        text += "  " + window.title + " on workspace " + window.workspace +
                (window.isFocused ? ", focused" : "") + (window.isVisible ? ", visible" : "") +
                '\n';
    }
    return text;
}

} // namespace hollowfernpike::test
