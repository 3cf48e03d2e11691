#pragma once

#include "contracts/Backend.h"
#include "desktop/Application.h"
#include "desktop/Combination.h"
#include "platform/Desktop.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/owners/WindowOwners.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "support/ChildProcess.h"
#include "support/WaitUntil.h"

#include <QGuiApplication>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace hollowfernpike::test {

/// A backend in the real session of a story, which this process is in as well: the utility itself
/// does not run. What is changed of the process's environment is undone after the test.
template <class Story>
class StoryBackend final : public Backend {
public:
    using Open = std::function<std::unique_ptr<platform::Desktop>(const platform::DesktopHost&)>;

    /// `toolkitPlatform` is the toolkit's plug-in.
    StoryBackend(std::unique_ptr<Story> story, const Environment& environment,
                 const std::string& toolkitPlatform, const Open& open)
        : story_(std::move(story)), words_{"test", "-platform", toolkitPlatform} {
        enter(environment);
        toolkit_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
        owners_ = std::make_unique<freedesktop::WindowOwners>(entries_);
        runLoop_ = std::make_unique<qt::RunLoop>();
        bus_ = std::make_unique<freedesktop::SessionBus>();
        desktop_ =
            open({.mainQueue = queue_,
                  .runLoop = *runLoop_,
                  .windowOwners = *owners_,
                  .onLost = [] {},
                  .isScreenLocked = [] { return false; },
                  .bus = bus_.get(),
                  .purposeOf = [](const auto& /*combination*/) { return "Test"; },
                  .onReassigned = [](const auto& /*from*/, const auto& /*to*/) { return false; },
                  .onTrusted = [] {},
                  .restart = [] {}});
    }

    platform::EventTaps& eventTaps() override { return desktop_->eventTaps(); }
    platform::Windows& windows() override { return desktop_->windows(); }

    void open(const std::string& name) override {
        front_ = &story_->open(name);
        applications_[name] = front_;
    }

    void quit(const std::string& name) override {
        for (const auto process : applications_.at(name)->copies()) {
            ::kill(process, SIGTERM);
        }
    }

    bool isInFront(const std::string& name) override {
        return static_cast<bool>(story_->isInFront(*applications_.at(name)));
    }

    bool reachesFront(const platform::KeyCombination& combination) override {
        const Combination pressed{combination.keyCode, combination.modifierFlags};
        const auto key = story_->keyboard.keycode(pressed.keyName());
        const auto before = front_->downs(key);
        story_->strike(pressed);
        if (const auto isThrough = story_->getsKeys(*front_); !isThrough) {
            throw std::runtime_error(isThrough.message());
        }
        return front_->downs(key) > before;
    }

    bool eventually(const std::function<bool()>& condition) override {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

private:
    static void enter(const Environment& environment) {
        for (const auto& [name, value] : environment) {
            if (value) {
                ::setenv(name.c_str(), value->c_str(), 1);
            } else {
                ::unsetenv(name.c_str());
            }
        }
    }

    std::unique_ptr<Story> story_;
    std::array<std::string, 3> words_;
    std::array<char*, 4> arguments_{words_[0].data(), words_[1].data(), words_[2].data(), nullptr};
    int count_ = 3;
    std::unique_ptr<QGuiApplication> toolkit_;
    qt::MainQueue queue_;
    std::unique_ptr<qt::RunLoop> runLoop_;
    freedesktop::DesktopEntries entries_;
    std::unique_ptr<freedesktop::WindowOwners> owners_;
    std::unique_ptr<freedesktop::SessionBus> bus_;
    std::unique_ptr<platform::Desktop> desktop_;
    std::map<std::string, Application*> applications_;
    Application* front_ = nullptr;
};

} // namespace hollowfernpike::test
