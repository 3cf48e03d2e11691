#include "desktop/kde/KWinSession.h"

#include <algorithm>

namespace hollowfernpike::test {

// KWin does not tell what other windows cover.
std::vector<PagerWindow> WaylandPagerOnKWin::windows() const {
    const auto here = workspace();
    std::vector<PagerWindow> result;
    for (const auto& window : kwin_.windows()) {
        const auto& desktops = window.desktops;
        const bool isHere = desktops.empty() || std::ranges::find(desktops, here) != desktops.end();
        result.push_back({.process = window.process,
                          .applicationId = window.applicationId,
                          .title = window.title,
                          .workspace = isHere ? here : desktops.front(),
                          .isFocused = window.isActive,
                          .isVisible = isHere && !window.isMinimized,
                          .isFullscreen = window.isFullscreen});
    }
    return result;
}

bool KWinSession::swallowsKeyUps() const {
    constexpr int firstThatDoes = 6;
    if (!swallowsKeyUps_) {
        swallowsKeyUps_ = desktop.version() >= firstThatDoes;
    }
    return *swallowsKeyUps_;
}

void KWinSession::restart() {
    desktop.restart();
    keys.reconnect();
    kwinPager.reconnect();
}

} // namespace hollowfernpike::test
