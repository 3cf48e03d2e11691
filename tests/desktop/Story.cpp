#include "desktop/Story.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

constexpr std::array<std::uint16_t, 4> lockStates{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                  XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

bool contains(const std::vector<xcb_window_t>& windows, xcb_window_t window) {
    return std::ranges::find(windows, window) != windows.end();
}

} // namespace

Story::Story(const std::string& windowManager, ScreenSize size, Home home)
    : Stage(windowManager, size, std::move(home)) {}

ChildProcess& Story::launchUtility(const Environment& changes) {
    return launchUtility(changes, {});
}

ChildProcess& Story::launchUtility(const Environment& changes,
                                   const std::vector<std::string>& arguments) {
    auto command = arguments;
    command.insert(command.begin(), HFP_PROGRAM);
    return utility_.start(desktop, changes, command);
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

KeyGrab Story::grabOf(const Combination& combination) const {
    const auto hasPlace = [&](const KeyPosition& key) {
        return key.keyCode == combination.keyCode;
    };
    const bool isKnown =
        std::ranges::any_of(namedKeys(), hasPlace) || std::ranges::any_of(unnamedKeys(), hasPlace);
    return isKnown ? KeyGrab{keyboard.keycode(combination.keyName()), combination.modifierState()}
                   : KeyGrab{};
}

testing::AssertionResult Story::isActive(xcb_window_t window) {
    if (waitUntil([&] { return hasKeys({window}); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "window " << window << " is not active but " << pager.activeWindow() << '\n'
           << diary();
}

bool Story::bringForward(const std::function<std::vector<xcb_window_t>()>& windows) {
    const auto comesSoon = [&] {
        pager.activate(windows().at(0));
        return waitUntil([&] { return hasKeys(windows()); }, 2s);
    };
    return waitUntil(comesSoon);
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

std::string Story::windowsTold() {
    return "active window " + std::to_string(pager.activeWindow()) + ", focus " +
           std::to_string(pager.focusedWindow()) + '\n';
}

} // namespace hollowfernpike::test
