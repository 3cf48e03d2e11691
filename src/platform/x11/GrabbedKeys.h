#pragma once

#include "platform/x11/KeyGrabs.h"
#include "platform/x11/KeySource.h"
#include "platform/x11/RawKeys.h"

namespace hollowfernpike::x11 {

/// The presses of the combinations of interest, taken from everybody else: the source of an active
/// tap. Combinations that another client holds are only observed, and tried again with every
/// change and after each of their presses.
class GrabbedKeys final : public KeySource {
public:
    explicit GrabbedKeys(const Connection& connection);

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    void start(const KeyboardMap& map) override;
    void stop() override;
    std::optional<KeyPress> read(const xcb_generic_event_t& event) override;

private:
    void update();
    std::optional<KeyPress> readSwallowed(const xcb_generic_event_t& event) const;
    std::optional<KeyPress> readObserved(const RawKeys::Press& press);

    KeyGrabs grabs_;
    RawKeys rawKeys_;
    std::vector<platform::KeyCombination> interest_;
    std::vector<platform::KeyCombination> taken_;
    std::optional<KeyboardMap> map_; ///< present while started
    std::optional<RawKeys::Press> lastObserved_;
};

} // namespace hollowfernpike::x11
