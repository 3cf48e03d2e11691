#pragma once

#include "platform/LocalizedError.h"
#include "platform/x11/server/Connection.h"

#include <optional>

namespace hollowfernpike::x11 {

/// Why key presses of the whole desktop cannot be seen or swallowed.
enum class TrustProblem {
    noDisplay,        ///< no X server can be reached
    restrictedClient, ///< the server withholds the extensions, as it does from untrusted clients
    guestOfWayland, ///< the server is itself a client of a Wayland compositor and sees the keys of
                    ///< its own clients alone
};

/// Asks the server behind the connection, or says noDisplay if there is none. Agrees with the
/// server on the versions of XKB and XInput that taps use.
std::optional<TrustProblem> findTrustProblem(const Connection* connection);

/// What to tell the user: what is missing and what to do about it.
platform::LocalizedError trustMessage(TrustProblem problem);

} // namespace hollowfernpike::x11
