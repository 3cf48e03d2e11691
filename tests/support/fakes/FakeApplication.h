#pragma once

#include "platform/Application.h"
#include "support/fakes/CallLog.h"

#include <vector>

namespace hollowfernpike::test {

/// An application without windows but those that the test claims. `run` returns at once.
class FakeApplication final : public platform::Application {
public:
    explicit FakeApplication(CallLog& log) : log_(log) {}

    platform::ApplicationDelegate* delegate = nullptr;
    std::vector<platform::ApplicationWindow> openWindows;
    bool modal = false;

    void setDelegate(platform::ApplicationDelegate* newDelegate) override {
        delegate = newDelegate;
    }

    void setActivationPolicy(platform::ActivationPolicy policy) override {
        log_.record(policy == platform::ActivationPolicy::regular
                        ? "application.setActivationPolicy regular"
                        : "application.setActivationPolicy accessory");
    }

    void activateIgnoringOtherApps() override {
        log_.record("application.activateIgnoringOtherApps");
    }

    std::vector<platform::ApplicationWindow> windows() override { return openWindows; }

    bool hasModalWindow() override { return modal; }

    void sendAction(const platform::MenuItem& item) override {
        if (platform::ActionTarget* target = item.target != nullptr ? item.target : delegate) {
            target->performAction(item.action, &item);
        }
    }

    int run() override { return 0; }

    void terminate() override { log_.record("application.terminate"); }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
