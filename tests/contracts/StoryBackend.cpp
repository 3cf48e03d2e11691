#include "contracts/StoryBackend.h"

#include "support/WaitUntil.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

void enter(const Environment& environment) {
    for (const auto& [name, value] : environment) {
        if (value) {
            ::setenv(name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }
}

} // namespace

StoryBackend::StoryBackend(std::shared_ptr<DesktopStory> story, const Environment& environment,
                           const std::string& toolkitPlatform, const Open& open)
    : story_(std::move(story)), words_{"test", "-platform", toolkitPlatform} {
    enter(environment);
    toolkit_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
    owners_ = std::make_unique<freedesktop::WindowOwners>(entries_);
    bus_ = std::make_unique<freedesktop::SessionBus>();
    desktop_ = open(host());
}

platform::DesktopHost StoryBackend::host() {
    return {.mainQueue = queue_,
            .runLoop = runLoop_,
            .windowOwners = *owners_,
            .onLost = [] {},
            .isScreenLocked = [] { return false; },
            .bus = bus_.get(),
            .purposeOf = [](const auto& /*combination*/) { return "Test"; },
            .onReassigned = [](const auto& /*from*/, const auto& /*to*/) { return false; },
            .onTrusted = [] {},
            .restart = [] {}};
}

void StoryBackend::open(const std::string& name) {
    front_ = &story_->open(name);
    applications_[name] = front_;
}

void StoryBackend::quit(const std::string& name) {
    for (const auto process : applications_.at(name)->copies()) {
        ::kill(process, SIGTERM);
    }
}

bool StoryBackend::isInFront(const std::string& name) {
    return static_cast<bool>(story_->isInFront(*applications_.at(name)));
}

bool StoryBackend::reachesFront(const platform::KeyCombination& combination) {
    const Combination pressed{combination.keyCode, combination.modifierFlags};
    const auto key = story_->keycode(pressed);
    const auto before = front_->downs(key);
    story_->strike(pressed);
    if (const auto isThrough = story_->getsKeys(*front_); !isThrough) {
        throw std::runtime_error(isThrough.message());
    }
    return front_->downs(key) > before;
}

bool StoryBackend::eventually(const std::function<bool()>& condition) {
    return waitUntil([&] {
        QCoreApplication::processEvents();
        return condition();
    });
}

} // namespace hollowfernpike::test
