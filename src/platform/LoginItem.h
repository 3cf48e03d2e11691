#pragma once

#include "platform/Interface.h"
#include "platform/LocalizedError.h"

namespace hollowfernpike::platform {

enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,          ///< starts when the user logs in
    requiresApproval = 2, ///< registered, but switched off in the user's desktop settings
    notFound = 3,         ///< registered, but what it would start is gone
};

/// Whether this program starts when the user logs in. The desktop keeps that, not we: asked and
/// changed anew each time. Main thread only.
class LoginItem : public Interface {
public:
    virtual LoginItemStatus status() = 0;

    /// Has the program that is running now started at login. Throws `LocalizedError`.
    virtual void registerItem() = 0;

    /// Ends that. Throws `LocalizedError`.
    virtual void unregisterItem() = 0;
};

} // namespace hollowfernpike::platform
