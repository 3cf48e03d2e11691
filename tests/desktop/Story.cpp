#include "desktop/Story.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

constexpr const char* unboundKey = "AC11";
constexpr std::array<std::uint16_t, 4> lockStates{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                  XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

bool contains(const std::vector<xcb_window_t>& windows, xcb_window_t window) {
    return std::ranges::find(windows, window) != windows.end();
}

} // namespace

Story::Story(const std::string& windowManager, ScreenSize size, Home home)
    : desktop(windowManager, size, std::move(home)) {}

Application& Story::install(const std::string& name, const ApplicationTraits& traits) {
    return *applications_.emplace_back(
        std::make_unique<Application>(placeIn(desktop, HFP_PROBE_WINDOW), name, traits));
}

Application& Story::open(const std::string& name, const ApplicationTraits& traits) {
    auto& application = install(name, traits);
    application.start();
    if (const auto inFront = isInFront(application); !inFront) {
        throw std::runtime_error(inFront.message());
    }
    return application;
}

void Story::bind(const Combination& combination, const Application& application) {
    shortcuts_.add(combination, application);
}

void Story::bind(const Combination& combination, const ShortcutTarget& target) {
    shortcuts_.add(combination, target);
}

std::filesystem::path Story::shortcutsFile() const {
    return ShortcutList::fileIn(desktop.dataHome());
}

void Story::writeShortcuts() const {
    shortcuts_.write(shortcutsFile());
}

void Story::startUtility() {
    writeShortcuts();
    launchUtility();
    if (const auto live = areLive(); !live) {
        throw std::runtime_error(live.message());
    }
}

ChildProcess& Story::launchUtility(const Environment& changes) {
    return utility_.start(changed(desktop.environment(), changes));
}

testing::AssertionResult Story::areLive() {
    for (const auto& [combination, target] : shortcuts_.entries()) {
        const auto grab = grabOf(combination);
        if (grab.key == 0) {
            continue;
        }
        if (const auto live = isLive(grab); !live) {
            return live;
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult Story::isLive(const KeyGrab& grab) {
    std::vector<KeyGrab> grabs;
    for (const auto lock : lockStates) {
        grabs.push_back({grab.key, static_cast<std::uint16_t>(grab.state | lock), grab.window});
    }
    if (waitUntil([&] { return prober_.areTaken(grabs); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "key " << int{grab.key} << " with state " << grab.state << " is not taken\n"
           << utilityTells();
}

testing::AssertionResult Story::isFree(const Combination& combination) {
    if (waitUntil([&] { return !prober_.areTaken({grabOf(combination)}); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << combination.keyName() << " is still taken";
}

void Story::turnRepetitionOff() {
    run({"xset", "r", "off"});
}

void Story::unbindWindowManager() {
    writeFile(desktop.home() / ".config" / "openbox" / "rc.xml",
              R"(<openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard/></openbox_config>)");
    run({"openbox", "--reconfigure"});
    const Combination closing{118, option};
    if (const auto freed = isFree(closing); !freed) {
        throw std::runtime_error(freed.message());
    }
}

KeyGrab Story::grabOf(const Combination& combination) {
    const auto hasPlace = [&](const KeyPosition& key) {
        return key.keyCode == combination.keyCode;
    };
    const bool isKnown =
        std::ranges::any_of(namedKeys(), hasPlace) || std::ranges::any_of(unnamedKeys(), hasPlace);
    return isKnown ? KeyGrab{keyboard.keycode(combination.keyName()), combination.modifierState()}
                   : KeyGrab{};
}

void Story::strike(const Combination& combination) {
    keyboard.strike(combination.keys());
}

void Story::hold(const Combination& combination) {
    for (const auto& key : combination.keys()) {
        keyboard.press(key);
    }
}

void Story::letGo(const Combination& combination) {
    const auto keys = combination.keys();
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        keyboard.release(*key);
    }
}

testing::AssertionResult Story::isInFront(const Application& application) {
    if (waitUntil([&] { return hasKeys(application.windows()); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " is not in front\n" << diary();
}

testing::AssertionResult Story::isActive(xcb_window_t window) {
    if (waitUntil([&] { return hasKeys({window}); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "window " << window << " is not active but " << pager.activeWindow() << '\n'
           << diary();
}

testing::AssertionResult Story::getsKeys(const Application& application,
                                         std::chrono::milliseconds longest) {
    const auto key = keyboard.keycode(unboundKey);
    const auto before = application.downs(key);
    keyboard.strike({unboundKey});
    if (waitUntil([&] { return application.downs(key) > before; }, longest)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " does not get the keys\n"
                                       << diary();
}

testing::AssertionResult Story::switchTo(const Application& application) {
    const auto getsKeysSoon = [&] {
        return bringForward([&] { return application.windows(); }) && getsKeys(application, 5s);
    };
    return waitUntil(getsKeysSoon) ? testing::AssertionSuccess()
                                   : testing::AssertionFailure()
                                         << application.name() << " does not come to the front\n"
                                         << diary();
}

bool Story::bringForward(const std::function<std::vector<xcb_window_t>()>& windows) {
    const auto comesSoon = [&] {
        pager.activate(windows().at(0));
        return waitUntil([&] { return hasKeys(windows()); }, 2s);
    };
    return waitUntil(comesSoon);
}

testing::AssertionResult Story::nobodySaw(const Combination& combination) {
    const auto key = grabOf(combination).key;
    for (const auto& application : applications_) {
        if (application->downs(key) > 0) {
            return testing::AssertionFailure()
                   << application->name() << " saw " << combination.keyName() << '\n'
                   << diary();
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult Story::brings(const Application& target, const Application& from,
                                       const std::vector<std::string>& keys) {
    if (const auto ready = switchTo(from); !ready) {
        return ready;
    }
    const auto key = keyboard.keycode(keys.back());
    const auto before = from.downs(key);
    keyboard.strike(keys);
    if (const auto inFront = isInFront(target); !inFront) {
        return inFront;
    }
    if (const auto back = switchTo(from); !back) {
        return back;
    }
    if (from.downs(key) == before) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << from.name() << " saw " << keys.back() << '\n' << diary();
}

testing::AssertionResult Story::brings(const Application& target, const Application& from,
                                       const Combination& combination) {
    return brings(target, from, combination.keys());
}

testing::AssertionResult Story::passes(const Application& front,
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

std::filesystem::path Story::authority(const std::string& name, const std::string& trust) {
    auto file = desktop.home() / name;
    run({"xauth", "-f", file, "generate", desktop.display(), ".", trust, "timeout", "600"});
    return file;
}

void Story::run(const std::vector<std::string>& arguments) {
    const auto program = desktop.start(arguments);
    if (program->wait() != 0) {
        throw std::runtime_error(arguments.front() + ": " + program->errors());
    }
}

bool Story::hasKeys(const std::vector<xcb_window_t>& windows) {
    return contains(windows, pager.activeWindow()) && contains(windows, pager.focusedWindow());
}

std::string Story::diary() {
    std::string text = "active window " + std::to_string(pager.activeWindow()) + ", focus " +
                       std::to_string(pager.focusedWindow()) + '\n';
    return text + utilityTells() + diaryOf(applications_);
}

} // namespace hollowfernpike::test
