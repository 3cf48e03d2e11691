#include "contracts/Backend.h"
#include "contracts/MakeTextComparison.h"
#include "platform/macos/EventTaps.h"
#include "platform/macos/TextComparison.h"
#include "platform/macos/Windows.h"
#include "platform/macos/fakes/FakeMac.h"

#include <algorithm>

namespace hollowfernpike::test {

namespace {

class MacBackend final : public Backend {
public:
    platform::EventTaps& eventTaps() override { return eventTaps_; }
    platform::Windows& windows() override { return windows_; }

    void open(const std::string& name) override {
        mac_.running.push_back({.process = ++lastProcess_, .bundleIdentifier = name});
        mac_.windows->insert(mac_.windows->begin(),
                             {.ownerName = name, .ownerProcess = lastProcess_, .layer = 0});
    }

    void quit(const std::string& name) override {
        std::erase_if(mac_.running,
                      [&](const auto& known) { return known.bundleIdentifier == name; });
        std::erase_if(*mac_.windows, [&](const auto& window) { return window.ownerName == name; });
    }

    bool isInFront(const std::string& name) override {
        return mac_.windows->front().ownerName == name;
    }

    bool reachesFront(const platform::KeyCombination& combination) override {
        const auto taps = mac_.taps; // a callback may end one
        return std::ranges::all_of(taps, [&](MacTap* tap) {
            return mac_.press(*tap, combination.keyCode, combination.modifierFlags);
        });
    }

    // All has happened already.
    bool eventually(const std::function<bool()>& condition) override { return condition(); }

private:
    FakeMac& mac_ = FakeMac::shared();
    std::int32_t lastProcess_ = 100;
    macos::EventTaps eventTaps_;
    macos::Windows windows_;
};

} // namespace

std::unique_ptr<Backend> makeBackend() {
    return std::make_unique<MacBackend>();
}

std::unique_ptr<platform::TextComparison> makeTextComparison() {
    return std::make_unique<macos::TextComparison>();
}

} // namespace hollowfernpike::test
