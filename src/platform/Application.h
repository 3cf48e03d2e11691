#pragma once

#include "platform/Interface.h"
#include "platform/Menu.h"

#include <string>
#include <vector>

namespace hollowfernpike::platform {

/// How the desktop shows us: `regular` with our windows in its task bar, `accessory` without.
enum class ActivationPolicy { regular = 0, accessory = 1 };

struct ApplicationWindow {
    bool isVisible = false; ///< false for a minimised window
    std::string className;  ///< contains "StatusBar" if it belongs to the status item
};

/// Is told when the run begins and ends, and performs the actions that name no target.
class ApplicationDelegate : public ActionTarget {
public:
    virtual void applicationDidFinishLaunching() = 0;
    virtual void applicationWillTerminate() = 0;
};

/// The application as a whole. Main thread only.
class Application : public Interface {
public:
    /// The delegate stays the caller's and outlives the run.
    virtual void setDelegate(ApplicationDelegate* delegate) = 0;

    /// Applies to open and to future windows. While the desktop has no status bar, windows show in
    /// the task bar whatever the policy, because there is no other way back to them.
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Brings our key window to the front, before the windows of other applications. A sheet on it
    /// comes with it, sheets on other windows do not. If a dialog that blocks the whole application
    /// is open, it comes instead.
    virtual void activateIgnoringOtherApps() = 0;

    /// All windows of ours, visible or not.
    virtual std::vector<ApplicationWindow> windows() = 0;

    /// Whether a dialog is open that holds everything else up until it is answered.
    virtual bool hasModalWindow() = 0;

    /// Performs the action of a chosen item on its target, else on the delegate.
    virtual void sendAction(const MenuItem& item) = 0;

    /// Tells the delegate, handles events until `terminate`, tells the delegate; returns the
    /// process's exit status.
    virtual int run() = 0;

    /// Ends `run`, open dialogs or not, once the event at hand is handled.
    virtual void terminate() = 0;
};

} // namespace hollowfernpike::platform
