#pragma once

#include <cstddef>
#include <string>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Counts how often anybody asks the window manager of a display to make a window the active one.
class ActivationRequests {
public:
    explicit ActivationRequests(const std::string& display);
    ActivationRequests(const ActivationRequests&) = delete;
    ActivationRequests& operator=(const ActivationRequests&) = delete;
    ~ActivationRequests();

    /// Since this object was made.
    std::size_t count();

private:
    xcb_connection_t* connection_;
    xcb_atom_t activeWindow_ = XCB_NONE;
    std::size_t count_ = 0;
};

} // namespace hollowfernpike::test
