#pragma once

#include "desktop/DesktopStory.h"
#include "desktop/wayland/WaylandSession.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// What a story on a Wayland desktop has around it.
class WaylandStage {
public:
    explicit WaylandStage(std::unique_ptr<WaylandSession> session) : session_(std::move(session)) {}

    WaylandSession& session() const { return *session_; }

private:
    std::unique_ptr<WaylandSession> session_;
};

/// A story on a Wayland desktop. The stage is a base because it outlives what happens on it.
class WaylandStory : public WaylandStage, public DesktopStory {
public:
    explicit WaylandStory(std::unique_ptr<WaylandSession> place);

    Keyboard& keyboard;
    const WaylandPager& pager;

    /// The utility logs what it does about keys. Leaks are not looked for unless `changes` say so.
    using DesktopStory::launchUtility;
    ChildProcess& launchUtility(const Environment& changes) override;

    /// The utility's program, as it is run here.
    std::string program() const { return session().lend(HFP_PROGRAM); }

    /// What startUtility() needs to look for leaks, too.
    Environment leaksReported() const;

    /// Takes other layouts into use, or switches to one of several; returns when the utility, if it
    /// runs, has bound its combinations under it.
    void use(const KeyboardLayout& layout);
    void lockGroup(std::uint32_t group);

    /// How often the utility has told in its log that it has bound its combinations, which it does
    /// after it has told what was refused. No desktop tells others what is bound.
    std::size_t bindings();

    /// Whether, after some waiting, it has done so more often than that.
    testing::AssertionResult bindsAgain(std::size_t before);

    using DesktopStory::keycode;
    unsigned keycode(std::string_view keyName) const override { return keyboard.keycode(keyName); }

protected:
    Keys& keys() override { return keyboard; }
    ApplicationPlace applicationPlace() const override {
        return placeIn(session(), session().lend(HFP_WAYLAND_WINDOW));
    }
    std::filesystem::path dataHome() const override { return session().dataHome(); }
    testing::AssertionResult areLive() override { return bindsAgain(0); }
    void closeWelcome() override { session().closeWelcome(); }
    bool hasKeys(const Application& application) override;
    void activate(const Application& application) override;
    bool swallowsKeyUps() const override { return session().swallowsKeyUps(); }
    std::string windowsTold() override;

private:
    void settleLayouts(const std::function<void()>& change);
};

/// The story on the desktop that a test program is for.
std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout = {});

} // namespace hollowfernpike::test
