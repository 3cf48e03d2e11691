#pragma once

#include "platform/WindowList.h"
#include "support/CallLog.h"

#include <functional>

namespace hollowfernpike::test {

/// The windows that the test puts on the screen, front to back, or none to be had.
class FakeWindowList final : public platform::WindowList {
public:
    explicit FakeWindowList(CallLog& log) : log_(log) {}

    std::function<void()> onCopy; ///< runs, if any, in the middle of every query
    std::optional<std::vector<platform::WindowInfo>> windows{std::in_place};

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override {
        log_.record("windowList.copyWindowInfo");
        if (onCopy) {
            onCopy();
        }
        return windows;
    }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
