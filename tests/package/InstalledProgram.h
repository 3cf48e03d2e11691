#pragma once

#include "desktop/Story.h"
#include "desktop/resident/StatusMenu.h"
#include "desktop/windows/WindowUser.h"
#include "package/InstalledEntry.h"
#include "package/InstalledPackage.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace hollowfernpike::test {

/// The installed program, by the names that a desktop has for it.
namespace installed {

inline constexpr auto identifier = "app.hollowfernpike.Hollowfernpike";
inline constexpr auto program = "/usr/bin/hollowfernpike";

/// Has a desktop list the utility among its applications, and its bus start it.
void show(const PrivateDesktop& desktop);

/// Calls the utility as launchers do, which starts it: "Activate" or "ActivateAction", and the
/// method's arguments in GVariant's text form.
void call(const PrivateDesktop& desktop, const std::string& method,
          const std::vector<std::string>& arguments);

/// The process that has the utility's name on the bus. Throws if there is none.
pid_t process(const PrivateDesktop& desktop);

} // namespace installed

/// A desktop on a system with the package, and somebody who uses it.
class InstalledProgramTest : public testing::Test {
protected:
    static constexpr Combination bound{37, control | option};

    InstalledProgramTest() { installed::show(story.desktop); }

    InstalledPackage package;
    Story story;
    WindowUser user{story};

    /// Installs an application and binds it, before the utility starts.
    Application& bindTarget();

    /// Has the bus start the utility, and waits for its window.
    void activate();
};

} // namespace hollowfernpike::test
