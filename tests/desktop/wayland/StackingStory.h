#pragma once

#include "desktop/wayland/WaylandStory.h"

#include <memory>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// A story on a Wayland desktop whose windows lie on each other and can be minimised, and whose
/// session can go on when the compositor has crashed.
class StackingStory : public WaylandStory {
public:
    using WaylandStory::WaylandStory;

    /// For all windows of that process.
    virtual void minimize(pid_t process) const = 0;

    /// The processes of the windows, front to back.
    virtual std::vector<pid_t> order() const = 0;

    /// Kills the compositor and starts it anew; applications have ended by then.
    virtual void restart() = 0;
};

/// The story on the desktop that a test program is for.
std::unique_ptr<StackingStory> makeStackingStory();

} // namespace hollowfernpike::test
