#include "contracts/Backend.h"
#include "desktop/Story.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/owners/WindowOwners.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/x11/Desktop.h"

#include <QGuiApplication>

#include <array>
#include <csignal>
#include <cstdlib>
#include <map>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

/// A story whose session this process is in. What is changed of its environment is undone after
/// the test.
class StoryFromInside : public Story {
public:
    StoryFromInside() {
        for (const auto& [name, value] : desktop.environment()) {
            if (value) {
                ::setenv(name.c_str(), value->c_str(), 1);
            } else {
                ::unsetenv(name.c_str());
            }
        }
    }
};

/// The toolkit on the display that the environment names.
class Toolkit {
public:
    static void turn() { QCoreApplication::processEvents(); }

private:
    std::array<std::string, 3> words_{"test", "-platform", "xcb"};
    std::array<char*, 4> arguments_{words_[0].data(), words_[1].data(), words_[2].data(), nullptr};
    int count_ = 3;
    QGuiApplication application_{count_, arguments_.data()};
};

class X11Backend final : public Backend {
public:
    platform::EventTaps& eventTaps() override { return desktop_->eventTaps(); }
    platform::Windows& windows() override { return desktop_->windows(); }

    void open(const std::string& name) override {
        front_ = &story_.open(name);
        applications_[name] = front_;
    }

    void quit(const std::string& name) override {
        for (const auto process : applications_.at(name)->copies()) {
            ::kill(process, SIGTERM);
        }
    }

    bool isInFront(const std::string& name) override {
        return static_cast<bool>(story_.isInFront(*applications_.at(name)));
    }

    bool reachesFront(const platform::KeyCombination& combination) override {
        const Combination pressed{combination.keyCode, combination.modifierFlags};
        const auto key = story_.keyboard.keycode(pressed.keyName());
        const auto before = front_->downs(key);
        story_.strike(pressed);
        if (const auto isThrough = story_.getsKeys(*front_); !isThrough) {
            throw std::runtime_error(isThrough.message());
        }
        return front_->downs(key) > before;
    }

    bool eventually(const std::function<bool()>& condition) override {
        return waitUntil([&] {
            Toolkit::turn();
            return condition();
        });
    }

private:
    StoryFromInside story_;
    Toolkit toolkit_;
    qt::MainQueue queue_;
    qt::RunLoop runLoop_;
    freedesktop::DesktopEntries entries_;
    freedesktop::WindowOwners owners_{entries_};
    std::unique_ptr<platform::Desktop> desktop_ =
        x11::findDesktop()->open({.mainQueue = queue_,
                                  .runLoop = runLoop_,
                                  .windowOwners = owners_,
                                  .onLost = [] {},
                                  .isScreenLocked = [] { return false; }});
    std::map<std::string, Application*> applications_;
    Application* front_ = nullptr;
};

} // namespace

std::unique_ptr<Backend> makeBackend() {
    return std::make_unique<X11Backend>();
}

} // namespace hollowfernpike::test
