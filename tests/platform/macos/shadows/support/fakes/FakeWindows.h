#pragma once

#include "platform/macos/Windows.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// The system's windows are those of the test; the backend reads them. Every process comes to the
/// front but those that the test names as windowless.
class FakeWindows final : public platform::Windows {
public:
    explicit FakeWindows(CallLog& log) : log_(log) {}

    std::function<void()> onCopy;  ///< runs, if any, in the middle of every copyWindowInfo()
    std::function<void()> onBring; ///< runs, if any, in the middle of every bringToFront()
    std::optional<std::vector<platform::WindowInfo>> visible{std::in_place}; ///< front to back
    std::set<std::int32_t> windowless;

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override {
        log_.record("windows.copyWindowInfo");
        if (onCopy) {
            onCopy();
        }
        auto& listed = FakeMac::shared().windows;
        listed.reset();
        if (visible) {
            listed.emplace();
            for (const auto& window : *visible) {
                listed->push_back({.ownerName = window.ownerName,
                                   .ownerProcess = window.ownerProcess,
                                   .layer = window.layer});
            }
        }
        return backend_.copyWindowInfo();
    }

    std::vector<platform::ClientWindow> clientWindows() override {
        return backend_.clientWindows();
    }

    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override {
        return backend_.watch(std::move(onChange));
    }

    bool bringToFront(std::int32_t processIdentifier) override {
        log_.record("windows.bringToFront " + std::to_string(processIdentifier));
        if (onBring) {
            onBring();
        }
        FakeMac::shared().running.clear();
        if (!windowless.contains(processIdentifier)) {
            FakeMac::shared().running.push_back({.process = processIdentifier});
        }
        return backend_.bringToFront(processIdentifier);
    }

private:
    CallLog& log_;
    macos::Windows backend_;
};

} // namespace hollowfernpike::test
