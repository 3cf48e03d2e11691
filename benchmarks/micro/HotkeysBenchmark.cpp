#include "hotkeys/AppLauncher.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/AccessibilityTrust.h"
#include "platform/NotificationCenter.h"
#include "platform/RunningApplications.h"
#include "platform/TextComparison.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"
#include "support/fakes/FakeApplication.h"
#include "support/fakes/FakeApplicationBundles.h"
#include "support/fakes/FakeFileManager.h"
#include "support/fakes/FakeLoginItem.h"
#include "support/fakes/FakeMainQueue.h"
#include "support/fakes/FakeStatusBar.h"
#include "support/fakes/FakeUserDefaults.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <stdexcept>

namespace hollowfernpike {

namespace {

// A desktop that does nothing and costs nothing, so that only the manager's own work is measured.

class NullSource final : public platform::RunLoopSource {
    void addToMainRunLoop() override {}
    void removeFromMainRunLoop() override {}
};

class NullTap final : public platform::EventTap {
    void enable(bool) override {}
    void setInterest(std::span<const platform::KeyCombination> interest) override {
        benchmark::DoNotOptimize(interest.data());
    }
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override { return {}; }
    std::vector<platform::KeyCombination> refusedCombinations() const override { return {}; }
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() override {
        return std::make_unique<NullSource>();
    }
    void invalidate() override {}
};

class NullTaps final : public platform::EventTaps {
    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions,
                                               platform::EventTapCallback, void*) override {
        return std::make_unique<NullTap>();
    }
};

class NullTrust final : public platform::AccessibilityTrust {
    bool isProcessTrusted() override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
};

class NullWindows final : public platform::Windows {
    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override { return {}; }
    std::vector<platform::ClientWindow> clientWindows() override { return {}; }
    bool bringToFront(std::int32_t) override { return true; }
    std::unique_ptr<platform::Subscription> watch(std::function<void()>) override { return {}; }
};

class NullApplications final : public platform::RunningApplications {
    std::vector<platform::RunningApplication> withBundleIdentifier(std::string_view) override {
        return {};
    }
    std::optional<platform::RunningApplication> withProcessIdentifier(std::int32_t) override {
        return {};
    }
    void activate(const platform::RunningApplication&) override {}
};

class NullTextComparison final : public platform::TextComparison {
    bool canonicallyEquivalent(std::string_view, std::string_view) override { return false; }
};

/// Counts the launches, so that a hit can be told from a miss.
class NullWorkspace final : public platform::Workspace {
public:
    std::int64_t launches = 0;

private:
    void openApplication(const std::string&, const platform::OpenConfiguration&,
                         OpenCompletion) override {
        ++launches;
    }
};

/// Key code `index / 16` with the modifiers numbered `index % 16`.
platform::KeyEvent keyPress(std::int64_t index) {
    return {.keyCode = index / 16,
            .flags = (static_cast<std::uint64_t>(index % 16) << 17) |
                     platform::event_flags::nonCoalesced};
}

std::string document(std::int64_t count) {
    std::ostringstream text;
    for (std::int64_t index = 0; index < count; ++index) {
        const auto press = keyPress(index);
        text << (index == 0 ? '[' : ',') << R"({"id":")" << UUID::random().text()
             << R"(","keyCode":)" << press.keyCode << R"(,"modifierFlags":)" << press.flags
             << R"(,"appPath":"/usr/share/applications/org.example.Application)" << index
             << R"(.desktop","appName":"Application )" << index
             << R"(","appBundleIdentifier":"org.example.Application)" << index << R"("})";
    }
    return text.str() + ']';
}

/// A running manager with as many shortcuts as the benchmark's argument says.
class Hotkeys {
public:
    explicit Hotkeys(std::int64_t count) {
        platform::setServices(&services_);
        ShortcutStore::shared().importData(document(count));
        HotkeyManager::shared().start();
        if (std::ssize(*HotkeyManager::shared().shortcutMap()) != count) {
            throw std::logic_error("not every shortcut has a combination of its own");
        }
    }
    Hotkeys(const Hotkeys&) = delete;
    Hotkeys& operator=(const Hotkeys&) = delete;
    ~Hotkeys() {
        platform::SharedInstance<HotkeyManager>::resetForTesting();
        platform::SharedInstance<AppLauncher>::resetForTesting();
        platform::SharedInstance<ShortcutStore>::resetForTesting();
        platform::setServices(nullptr);
    }

    std::int64_t launches() const { return workspace_.launches; }

private:
    NullTrust trust_;
    NullTaps taps_;
    test::FakeFileManager files_;
    test::FakeMainQueue queue_;
    platform::NotificationCenter notifications_;
    NullApplications applications_;
    NullTextComparison texts_;
    NullWindows windows_;
    NullWorkspace workspace_;
    std::ostringstream output_;
    test::CallLog log_;
    test::FakeApplication application_{log_};
    test::FakeApplicationBundles bundles_;
    test::FakeLoginItem loginItem_{log_};
    test::FakeStatusBar statusBar_{log_};
    test::FakeUserDefaults defaults_;
    platform::Services services_{
        .accessibilityTrust = trust_,
        .application = application_,
        .applicationBundles = bundles_,
        .eventTaps = taps_,
        .fileManager = files_,
        .loginItem = loginItem_,
        .mainQueue = queue_,
        .notificationCenter = notifications_,
        .runningApplications = applications_,
        .statusBar = statusBar_,
        .textComparison = texts_,
        .userDefaults = defaults_,
        .windows = windows_,
        .workspace = workspace_,
        .standardOutput = output_,
    };
};

/// `count` key presses from number `first` on, shuffled so that caches cannot predict them.
std::vector<platform::KeyEvent> shuffledKeyPresses(std::int64_t first, std::int64_t count) {
    std::vector<platform::KeyEvent> presses;
    for (std::int64_t index = first; index < first + count; ++index) {
        presses.push_back(keyPress(index));
    }
    std::ranges::shuffle(presses, std::minstd_rand{});
    return presses;
}

void press(benchmark::State& state, const std::vector<platform::KeyEvent>& presses) {
    std::size_t next = 0;
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(
            hotkeyEventTapCallback(nullptr, platform::eventKeyDown, &presses[next], nullptr));
        next = next + 1 == presses.size() ? 0 : next + 1;
    }
}

void callbackMiss(benchmark::State& state) {
    const Hotkeys hotkeys(state.range(0));
    press(state, shuffledKeyPresses(state.range(0), state.range(0)));
    if (hotkeys.launches() != 0) {
        state.SkipWithError("a miss was launched");
    }
}

void callbackHit(benchmark::State& state) {
    const Hotkeys hotkeys(state.range(0));
    press(state, shuffledKeyPresses(0, state.range(0)));
    if (hotkeys.launches() != static_cast<std::int64_t>(state.iterations())) {
        state.SkipWithError("a hit was not launched");
    }
}

void mapBuild(benchmark::State& state) {
    const Hotkeys hotkeys(state.range(0));
    for ([[maybe_unused]] const auto iteration : state) {
        HotkeyManager::shared().buildShortcutMap();
    }
}

BENCHMARK(callbackMiss)->Arg(10)->Arg(1'000)->Arg(10'000);
BENCHMARK(callbackHit)->Arg(10)->Arg(1'000)->Arg(10'000);
BENCHMARK(mapBuild)->Arg(10)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace hollowfernpike
