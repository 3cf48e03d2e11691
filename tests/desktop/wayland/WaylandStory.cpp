#include "desktop/wayland/WaylandStory.h"

#include "support/Leaks.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr const char* fenceKey = "AC11"; // bound by nobody

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
    : keyboard(place->keyboard()), pager(place->pager()), session_(std::move(place)) {}

Application& WaylandStory::install(const std::string& name, const ApplicationTraits& traits) {
    return *applications_.emplace_back(std::make_unique<Application>(
        placeIn(*session_, session_->lend(HFP_WAYLAND_WINDOW)), name, traits));
}

Application& WaylandStory::open(const std::string& name, const ApplicationTraits& traits) {
    auto& application = install(name, traits);
    application.start();
    if (const auto inFront = isInFront(application); !inFront) {
        throw std::runtime_error(inFront.message());
    }
    return application;
}

void WaylandStory::bind(const Combination& combination, const Application& application) {
    shortcuts_.add(combination, application);
}

void WaylandStory::bind(const Combination& combination, const ShortcutTarget& target) {
    shortcuts_.add(combination, target);
}

std::filesystem::path WaylandStory::shortcutsFile() const {
    return ShortcutList::fileIn(session_->dataHome());
}

void WaylandStory::writeShortcuts() const {
    shortcuts_.write(shortcutsFile());
}

void WaylandStory::startUtility(const Environment& changes) {
    writeShortcuts();
    launchUtility(changes);
    if (const auto live = bindsAgain(0); !live) {
        throw std::runtime_error(live.message());
    }
    session_->closeWelcome();
}

ChildProcess& WaylandStory::launchUtility(const Environment& changes) {
    Environment environment{{"QT_LOGGING_RULES", "hollowfernpike.keys.debug=true"}, leaksAllowed()};
    return utility_.start(*session_, changed(environment, changes), program());
}

Environment WaylandStory::leaksReported() const {
    return test::leaksReported(session_->lend(HFP_KNOWN_LEAKS));
}

void WaylandStory::use(const KeyboardLayout& layout) {
    settleLayouts([&] { keyboard.use(layout); });
}

void WaylandStory::lockGroup(std::uint32_t group) {
    settleLayouts([&] { keyboard.lockGroup(group); });
}

void WaylandStory::settleLayouts(const std::function<void()>& change) {
    const bool isAwaited = session_->bindsSymbols() && utility_.isRunning();
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

void WaylandStory::hold(const Combination& combination) {
    for (const auto& key : combination.keys()) {
        keyboard.press(key);
    }
}

void WaylandStory::letGo(const Combination& combination) {
    const auto keys = combination.keys();
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        keyboard.release(*key);
    }
}

std::uint32_t WaylandStory::keycode(const Combination& combination) const {
    return keyboard.keycode(combination.keyName());
}

testing::AssertionResult WaylandStory::isInFront(const Application& application) {
    if (waitUntil([&] { return hasKeys(application); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " is not in front\n" << diary();
}

testing::AssertionResult WaylandStory::getsKeys(const Application& application,
                                                std::chrono::milliseconds longest) {
    const auto key = keyboard.keycode(fenceKey);
    const auto before = application.ups(key);
    keyboard.strike({fenceKey});
    if (waitUntil([&] { return application.ups(key) > before; }, longest)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " does not get the keys\n"
                                       << diary();
}

testing::AssertionResult WaylandStory::switchTo(const Application& application) {
    const auto getsKeysSoon = [&] {
        for (const auto process : application.copies()) {
            if (pager.windowOf(process)) {
                pager.focus(process);
            }
        }
        return waitUntil([&] { return hasKeys(application); }, 2s) && getsKeys(application, 5s);
    };
    return waitUntil(getsKeysSoon) ? testing::AssertionSuccess()
                                   : testing::AssertionFailure()
                                         << application.name() << " does not come to the front\n"
                                         << diary();
}

testing::AssertionResult WaylandStory::nobodySaw(const Combination& combination) {
    const auto key = keycode(combination);
    for (const auto& application : applications_) {
        if (timesSeen(key, *application) > 0) {
            return testing::AssertionFailure()
                   << application->name() << " saw " << combination.keyName() << '\n'
                   << diary();
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult WaylandStory::brings(const Application& target, const Application& from,
                                              const std::vector<std::string>& keys) {
    if (const auto ready = switchTo(from); !ready) {
        return ready;
    }
    const auto key = keyboard.keycode(keys.back());
    const auto before = timesSeen(key, from);
    keyboard.strike(keys);
    if (const auto inFront = isInFront(target); !inFront) {
        return inFront;
    }
    if (const auto back = switchTo(from); !back) {
        return back;
    }
    if (timesSeen(key, from) == before) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << from.name() << " saw " << keys.back() << '\n' << diary();
}

testing::AssertionResult WaylandStory::brings(const Application& target, const Application& from,
                                              const Combination& combination) {
    return brings(target, from, combination.keys());
}

testing::AssertionResult WaylandStory::passes(const Application& front,
                                              const std::vector<std::string>& keys) {
    if (const auto ready = switchTo(front); !ready) {
        return ready;
    }
    const auto key = keyboard.keycode(keys.back());
    const auto before = front.downs(key);
    keyboard.strike(keys);
    if (const auto arrived = getsKeys(front); !arrived || front.downs(key) == before + 1) {
        return arrived;
    }
    return testing::AssertionFailure() << front.name() << " missed " << keys.back() << '\n'
                                       << diary();
}

bool WaylandStory::hasKeys(const Application& application) const {
    const auto copies = application.copies();
    return std::ranges::find(copies, pager.focusedProcess()) != copies.end() &&
           saysThatItHasKeys(application.log());
}

std::size_t WaylandStory::timesSeen(std::uint32_t key, const Application& application) const {
    return application.downs(key) + (session_->swallowsKeyUps() ? application.ups(key) : 0);
}

std::string WaylandStory::diary() {
    auto text = session_->name() + ":\n";
    for (const auto& window : pager.windows()) {
        text += "  " + window.title + " on workspace " + window.workspace +
                (window.isFocused ? ", focused" : "") + (window.isVisible ? ", visible" : "") +
                '\n';
    }
    return text + utilityTells() + diaryOf(applications_);
}

} // namespace hollowfernpike::test
