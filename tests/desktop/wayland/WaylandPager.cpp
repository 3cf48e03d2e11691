#include "desktop/wayland/WaylandPager.h"

#include <algorithm>

namespace hollowfernpike::test {

std::optional<PagerWindow> WaylandPager::windowOf(pid_t process) const {
    const auto all = windows();
    const auto found = std::ranges::find(all, process, &PagerWindow::process);
    return found == all.end() ? std::nullopt : std::optional{*found};
}

pid_t WaylandPager::focusedProcess() const {
    const auto all = windows();
    const auto found = std::ranges::find(all, true, &PagerWindow::isFocused);
    return found == all.end() ? 0 : found->process;
}

} // namespace hollowfernpike::test
