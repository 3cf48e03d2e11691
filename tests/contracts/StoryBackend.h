#pragma once

#include "contracts/Backend.h"
#include "desktop/DesktopStory.h"
#include "platform/Desktop.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/owners/WindowOwners.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"

#include <QGuiApplication>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A backend in the real session of a story, which this process is in as well: the utility itself
/// does not run. What is changed of the process's environment is undone after the test.
class StoryBackend : public Backend {
public:
    using Open = std::function<std::unique_ptr<platform::Desktop>(const platform::DesktopHost&)>;

    /// `toolkitPlatform` is the toolkit's plug-in. A story that others have, too, has no
    /// applications open yet.
    StoryBackend(std::shared_ptr<DesktopStory> story, const Environment& environment,
                 const std::string& toolkitPlatform, const Open& open);

    platform::EventTaps& eventTaps() override { return desktop_->eventTaps(); }
    platform::Windows& windows() override { return desktop_->windows(); }
    void open(const std::string& name) override;
    void quit(const std::string& name) override;
    bool isInFront(const std::string& name) override;
    bool reachesFront(const platform::KeyCombination& combination) override;
    bool eventually(const std::function<bool()>& condition) override;

private:
    platform::DesktopHost host();

    std::shared_ptr<DesktopStory> story_;
    std::array<std::string, 3> words_;
    std::array<char*, 4> arguments_{words_[0].data(), words_[1].data(), words_[2].data(), nullptr};
    int count_ = 3;
    std::unique_ptr<QGuiApplication> toolkit_;
    qt::MainQueue queue_;
    qt::RunLoop runLoop_;
    freedesktop::DesktopEntries entries_;
    std::unique_ptr<freedesktop::WindowOwners> owners_;
    std::unique_ptr<freedesktop::SessionBus> bus_;
    std::unique_ptr<platform::Desktop> desktop_;
    std::map<std::string, Application*> applications_;
    Application* front_ = nullptr;
};

} // namespace hollowfernpike::test
