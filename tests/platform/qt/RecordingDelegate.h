#pragma once

#include "platform/Application.h"

#include <functional>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Performs the actions of an application, and remembers them.
class RecordingDelegate final : public platform::ApplicationDelegate {
public:
    std::vector<std::string> actions;
    std::vector<const platform::MenuItem*> senders; ///< of each action
    std::function<void()> onAction;                 ///< what else happens in each, if anything
    std::function<void()> onLaunch;
    bool launched = false;
    bool terminated = false;

    void applicationDidFinishLaunching() override {
        launched = true;
        if (onLaunch) {
            onLaunch();
        }
    }

    void applicationWillTerminate() override { terminated = true; }

    void performAction(std::string_view action, const platform::MenuItem* sender) override {
        actions.emplace_back(action);
        senders.push_back(sender);
        if (onAction) {
            onAction();
        }
    }
};

} // namespace hollowfernpike::test
