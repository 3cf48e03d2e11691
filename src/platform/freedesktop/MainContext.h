#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/GlibPointers.h"

#include <functional>
#include <memory>

namespace hollowfernpike::freedesktop {

/// A GLib main context of our own that runs inside whatever main loop the process has. GLib's
/// default context may be iterated by nobody. Only for sources without descriptors and time limits:
/// answers that GLib's own threads hand over. Main thread only.
class MainContext {
public:
    /// The loop outlives this.
    explicit MainContext(platform::RunLoop& runLoop);
    MainContext(const MainContext&) = delete;
    MainContext& operator=(const MainContext&) = delete;
    ~MainContext();

    /// Runs `work` in such a way that what it starts answers through this context.
    void perform(const std::function<void()>& work) const;

    /// Waits for answers until `isDone`. For the end of a life, when the loop no longer runs.
    void drain(const std::function<bool()>& isDone) const;

private:
    void iterate() const;

    MainContextPointer context_;
    std::unique_ptr<platform::Subscription> watch_;
};

} // namespace hollowfernpike::freedesktop
