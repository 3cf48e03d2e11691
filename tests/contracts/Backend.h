#pragma once

#include "platform/EventTap.h"
#include "platform/Windows.h"

#include <functional>
#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A backend of the seam, in a session with applications and a user. What is asked of backends here
/// is what the headers of the seam promise of all of them, and no more.
class Backend : public platform::Interface {
public:
    virtual platform::EventTaps& eventTaps() = 0;
    virtual platform::Windows& windows() = 0;

    /// Opens an application with one window, which is in front on return.
    virtual void open(const std::string& name) = 0;

    /// Ends it.
    virtual void quit(const std::string& name) = 0;

    virtual bool isInFront(const std::string& name) = 0;

    /// The user presses this and lets it go. Whether the application in front saw the key going
    /// down, once all has happened that will.
    virtual bool reachesFront(const platform::KeyCombination& combination) = 0;

    /// Lets the main loop turn until this holds, and asks again each time; false if it does not for
    /// long.
    [[nodiscard]] virtual bool eventually(const std::function<bool()>& condition) = 0;
};

/// That of the desktop that a test program is for.
std::unique_ptr<Backend> makeBackend();

} // namespace hollowfernpike::test
