#pragma once

#include "platform/RunLoop.h"
#include "platform/Services.h"

#include <memory>

namespace hollowfernpike {

/// Starts the utility when the application object is ready and takes it down before it ends. Lives
/// for the whole run. Main thread only.
class AppDelegate {
public:
    explicit AppDelegate(const platform::Services& services);

    /// Asks for the permission to see key presses, then brings the combinations to life.
    void applicationDidFinishLaunching();

    /// Gives back everything held of the desktop.
    void applicationWillTerminate();

private:
    void shortcutsDidChange();

    const platform::Services& services_;
    std::unique_ptr<platform::Subscription> shortcutsObservation_;
};

} // namespace hollowfernpike
