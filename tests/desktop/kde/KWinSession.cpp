#include "desktop/kde/KWinSession.h"

#include <algorithm>
#include <array>

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

// Control, and both Control and Alt, make other symbols of some keys, for which the toolkit has no
// name or which lead to another terminal.
Combination KWinSession::rare(std::uint16_t keyCode) const {
    constexpr std::array changedByAlt{"KPMU", "KPAD", "KPDV", "KPSU", "PRSC"};
    const auto name = Combination{keyCode}.keyName();
    if (name == "PAUS") {
        return {keyCode, command | option};
    }
    if (std::ranges::find(changedByAlt, name) != changedByAlt.end()) {
        return {keyCode, control | command};
    }
    return {keyCode, control | command | (name.starts_with("FK") ? shift : option)};
}

void KWinSession::restart() {
    desktop.restart();
    keys.reconnect();
    kwinPager.reconnect();
}

} // namespace hollowfernpike::test
