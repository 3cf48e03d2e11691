#pragma once

#include "platform/EventTap.h"
#include "platform/Interface.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::platform {

/// An application about to start.
struct StartingApplication {
    std::string name;             ///< for people
    std::string bundleIdentifier; ///< may be empty
    std::string entryPath;
    std::string program;     ///< first word of the command line
    std::string windowClass; ///< the class its windows will carry, if its entry says so
    bool announces = false;  ///< its entry promises that it ends the start-up notice
};

/// Tells the desktop that the user asked for an application, so that its first window may take the
/// focus. Main thread only; waits for one answer of the desktop at most.
class LaunchFeedback : public Interface {
public:
    /// Returns the identifier to hand to the new process (DESKTOP_STARTUP_ID; the desktop's own
    /// activation token elsewhere), carrying the time of the last key press that a tap delivered.
    /// Shows a start-up notice if `application.announces`. Empty when the desktop has no such
    /// identifiers.
    virtual std::string begin(const StartingApplication& application) = 0;

    /// Takes back the notice of a start that failed or takes too long. Unknown identifiers are
    /// ignored.
    virtual void end(const std::string& identifier) = 0;

    /// Whether the desktop may have opened the first window of the latest launch behind others, so
    /// that it has to be brought forward. To be asked when it is there.
    virtual bool mayOpenBehind() = 0;

    /// How many times the user has pressed a combination so far, as the taps tell it: a combination
    /// that is held down counts once, however often it repeats. As long as the count stays the
    /// same, the user has asked for nothing new.
    virtual std::uint64_t holdCount() = 0;

    /// To be called before a press of this combination is carried out that no tap has seen, because
    /// a command stands for it: windows come forward and launches happen in the name of this press,
    /// as of those that taps deliver. `startupIdentifier` is what the desktop gave that command;
    /// may be empty.
    virtual void notePress(const KeyCombination& /*combination*/,
                           const std::string& /*startupIdentifier*/) {}
};

} // namespace hollowfernpike::platform
