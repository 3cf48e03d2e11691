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

/// Whether this program starts when the user logs in. The desktop keeps this setting: every call
/// reads or changes it there. Main thread only.
class LoginItem : public Interface {
public:
    virtual LoginItemStatus status() = 0;

    /// Makes the desktop start the program that is running now at login. Throws `LocalizedError`.
    virtual void registerItem() = 0;

    /// Makes the desktop no longer start it. Throws `LocalizedError`.
    virtual void unregisterItem() = 0;
};

} // namespace hollowfernpike::platform
