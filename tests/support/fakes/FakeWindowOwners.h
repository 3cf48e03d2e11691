#pragma once

#include "platform/WindowOwners.h"

#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Names the application of a window after its class, followed by `suffix`.
class FakeWindowOwners final : public platform::WindowOwners {
public:
    platform::WindowOwner ownerOf(const platform::WindowFacts& window) override {
        asked.push_back(window);
        return {.name = window.className + suffix, .bundleIdentifier = {}};
    }

    std::uint64_t generation() override { return currentGeneration; }

    std::vector<platform::WindowFacts> asked; ///< every question, in order
    std::string suffix;
    std::uint64_t currentGeneration = 1;
};

} // namespace hollowfernpike::test
