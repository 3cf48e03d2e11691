#pragma once

#include "platform/x11/server/Connection.h"

namespace hollowfernpike::x11 {

/// What another client has taken for itself (an active grab). Screen lockers take both for as long
/// as they are up, menus while they are open; some lockers leave the pointer to the user once their
/// dialog shows. A client whose passive grab catches a key press has the keyboard until the
/// release.
struct TakenDevices {
    bool keyboard = false;
    bool pointer = false;
};

/// Asks which devices are taken, without taking any; no other client notices.
class TakenInput {
public:
    /// The connection outlives this object.
    explicit TakenInput(const Connection& connection);
    TakenInput(const TakenInput&) = delete;
    TakenInput& operator=(const TakenInput&) = delete;
    ~TakenInput();

    /// Waits for the server, once.
    TakenDevices devices() const;

private:
    const Connection& connection_;
    xcb_window_t window_; ///< never shown
};

} // namespace hollowfernpike::x11
