#pragma once

#include "platform/OwnWindows.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// What the toolkit does not do for our own windows, by the Extended Window Manager Hints 1.5.
/// Requests go over the toolkit's connection, so that they keep their order with the toolkit's own.
/// Main thread only.
class OwnWindows final : public platform::OwnWindows {
public:
    /// `toolkit` outlives this.
    explicit OwnWindows(xcb_connection_t* toolkit);

    void setShownInTaskBar(std::uintptr_t native, bool shown) override;
    void bringToFront(std::uintptr_t native) override;

    /// Window managers judge requests by their time.
    void useActivationToken(const std::string& /*token*/) override {}

private:
    bool isManaged(xcb_window_t window);
    std::optional<std::uint32_t> number(xcb_window_t window, std::string_view property,
                                        xcb_atom_t type);
    void writeState(xcb_window_t window, bool shown);

    xcb_connection_t* toolkit_;
    xcb_window_t root_;
};

} // namespace hollowfernpike::x11
