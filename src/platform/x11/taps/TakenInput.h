#pragma once

#include "platform/x11/server/HiddenWindow.h"

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
    explicit TakenInput(const Connection& connection)
        : connection_(connection), window_(connection) {}

    /// Waits for the server, once.
    TakenDevices devices() const;

private:
    const Connection& connection_;
    HiddenWindow window_;
};

} // namespace hollowfernpike::x11
