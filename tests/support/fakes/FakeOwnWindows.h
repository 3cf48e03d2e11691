#pragma once

#include "platform/OwnWindows.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace hollowfernpike::test {

/// Writes down what is asked for windows of ours.
class FakeOwnWindows final : public platform::OwnWindows {
public:
    std::map<std::uintptr_t, bool> inTaskBar;
    std::optional<bool> shownAsApplication;
    std::vector<std::uintptr_t> broughtToFront;

    void setShownAsApplication(bool shown) override { shownAsApplication = shown; }
    void setShownInTaskBar(std::uintptr_t window, bool shown) override {
        inTaskBar[window] = shown;
    }
    void bringToFront(std::uintptr_t window) override { broughtToFront.push_back(window); }
    void useActivationToken(const std::string& /*token*/) override {}
};

} // namespace hollowfernpike::test
