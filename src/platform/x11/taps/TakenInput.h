#pragma once

#include "platform/x11/server/Connection.h"

namespace hollowfernpike::x11 {

/// Whether another client has taken both the keyboard and the pointer for itself (an active grab of
/// each), as screen lockers do for as long as they are up and menus while they are open. Asking
/// takes nothing and nobody notices.
class TakenInput {
public:
    /// The connection outlives this object.
    explicit TakenInput(const Connection& connection);
    TakenInput(const TakenInput&) = delete;
    TakenInput& operator=(const TakenInput&) = delete;
    ~TakenInput();

    /// Waits for the server, once.
    bool isTaken() const;

private:
    const Connection& connection_;
    xcb_window_t window_; ///< never shown
};

} // namespace hollowfernpike::x11
