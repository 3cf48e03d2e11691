#pragma once

#include "platform/Interface.h"

#include <functional>
#include <memory>

namespace hollowfernpike::platform {

/// Something that goes on until it is destroyed.
class Subscription : public Interface {};

/// The main loop, for backends that listen on a descriptor of their own. Main thread only.
class RunLoop : public Interface {
public:
    /// Calls `onReadable` on the main thread whenever `descriptor` can be read, until the returned
    /// subscription is destroyed, which the handler may do itself. The descriptor stays the
    /// caller's and must outlive the subscription.
    virtual std::unique_ptr<Subscription> watchReadable(int descriptor,
                                                        std::function<void()> onReadable) = 0;
};

} // namespace hollowfernpike::platform
