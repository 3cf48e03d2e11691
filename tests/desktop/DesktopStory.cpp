#include "desktop/DesktopStory.h"

#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr const char* fenceKey = "AC11"; // bound by nobody

} // namespace

Application& DesktopStory::install(const std::string& name, const ApplicationTraits& traits) {
    return *applications_.emplace_back(
        std::make_unique<Application>(applicationPlace(), name, traits));
}

Application& DesktopStory::open(const std::string& name, const ApplicationTraits& traits) {
    auto& application = install(name, traits);
    application.start();
    if (const auto inFront = isInFront(application); !inFront) {
        throw std::runtime_error(inFront.message());
    }
    return application;
}

void DesktopStory::bind(const Combination& combination, const Application& application) {
    shortcuts_.add(combination, application);
}

void DesktopStory::bind(const Combination& combination, const ShortcutTarget& target) {
    shortcuts_.add(combination, target);
}

void DesktopStory::startUtility(const Environment& changes) {
    writeShortcuts();
    launchUtility(changes);
    if (const auto live = areLive(); !live) {
        throw std::runtime_error(live.message());
    }
    closeWelcome();
}

testing::AssertionResult DesktopStory::isInFront(const Application& application) {
    if (waitUntil([&] { return hasKeys(application); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " is not in front\n" << diary();
}

testing::AssertionResult DesktopStory::getsKeys(const Application& application,
                                                std::chrono::milliseconds longest) {
    const auto key = keycode(fenceKey);
    const auto before = application.ups(key);
    keys().strike({fenceKey});
    if (waitUntil([&] { return application.ups(key) > before; }, longest)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << application.name() << " does not get the keys\n"
                                       << diary();
}

testing::AssertionResult DesktopStory::switchTo(const Application& application) {
    const auto getsKeysSoon = [&] {
        activate(application);
        return waitUntil([&] { return hasKeys(application); }, 2s) && getsKeys(application, 5s);
    };
    return waitUntil(getsKeysSoon) ? testing::AssertionSuccess()
                                   : testing::AssertionFailure()
                                         << application.name() << " does not come to the front\n"
                                         << diary();
}

testing::AssertionResult DesktopStory::nobodySaw(const Combination& combination) {
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

testing::AssertionResult DesktopStory::brings(const Application& target, const Application& from,
                                              const std::vector<std::string>& keyNames) {
    if (const auto ready = switchTo(from); !ready) {
        return ready;
    }
    const auto key = keycode(keyNames.back());
    const auto before = timesSeen(key, from);
    keys().strike(keyNames);
    if (const auto inFront = isInFront(target); !inFront) {
        return inFront;
    }
    if (const auto back = switchTo(from); !back) {
        return back;
    }
    if (timesSeen(key, from) == before) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << from.name() << " saw " << keyNames.back() << '\n'
                                       << diary();
}

testing::AssertionResult DesktopStory::brings(const Application& target, const Application& from,
                                              const Combination& combination) {
    return brings(target, from, combination.keys());
}

testing::AssertionResult DesktopStory::passes(const Application& front,
                                              const std::vector<std::string>& keyNames) {
    if (const auto ready = switchTo(front); !ready) {
        return ready;
    }
    const auto key = keycode(keyNames.back());
    const auto before = front.downs(key);
    keys().strike(keyNames);
    if (const auto arrived = getsKeys(front); !arrived || front.downs(key) == before + 1) {
        return arrived;
    }
    return testing::AssertionFailure() << front.name() << " missed " << keyNames.back() << '\n'
                                       << diary();
}

std::string DesktopStory::diary() {
    return windowsTold() + utilityTells() + diaryOf(applications_);
}

std::size_t DesktopStory::timesSeen(unsigned key, const Application& application) const {
    return application.downs(key) + (swallowsKeyUps() ? application.ups(key) : 0);
}

} // namespace hollowfernpike::test
