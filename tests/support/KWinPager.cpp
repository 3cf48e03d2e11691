#include "support/KWinPager.h"

#include <algorithm>
#include <cstdint>

#include <plasma-window-management-client-protocol.h>

namespace hollowfernpike::test {

namespace {

KWinWindows::Condition belongsTo(pid_t process) {
    return [process](const KWinWindow& window) { return window.process == process; };
}

KWinWindows::Condition isTitled(const std::string& title) {
    return [title](const KWinWindow& window) { return window.title == title; };
}

KWinWindows::Request setting(std::uint32_t state) {
    return [state](org_kde_plasma_window* window) {
        org_kde_plasma_window_set_state(window, state, state);
    };
}

const auto activating = setting(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE);

} // namespace

std::optional<KWinWindow> KWinPager::windowOf(pid_t process) {
    const auto all = windows();
    const auto found = std::ranges::find(all, process, &KWinWindow::process);
    return found == all.end() ? std::nullopt : std::optional{*found};
}

pid_t KWinPager::activeProcess() {
    const auto all = windows();
    const auto found = std::ranges::find(all, true, &KWinWindow::isActive);
    return found == all.end() ? 0 : found->process;
}

void KWinPager::activate(pid_t process) {
    windows_.ask(belongsTo(process), activating);
}

void KWinPager::minimize(pid_t process) {
    windows_.ask(belongsTo(process), setting(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MINIMIZED));
}

void KWinPager::makeFullscreen(pid_t process) {
    windows_.ask(belongsTo(process), setting(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_FULLSCREEN));
}

void KWinPager::close(pid_t process) {
    windows_.ask(belongsTo(process), &org_kde_plasma_window_close);
}

void KWinPager::moveToDesktop(pid_t process, const std::string& identifier) {
    const auto others = desktops_.all();
    windows_.ask(belongsTo(process), [&](org_kde_plasma_window* window) {
        org_kde_plasma_window_request_enter_virtual_desktop(window, identifier.c_str());
        for (const auto& other : others) {
            if (other != identifier) {
                org_kde_plasma_window_request_leave_virtual_desktop(window, other.c_str());
            }
        }
    });
}

void KWinPager::activate(const std::string& title) {
    windows_.ask(isTitled(title), activating);
}

void KWinPager::close(const std::string& title) {
    windows_.ask(isTitled(title), &org_kde_plasma_window_close);
}

} // namespace hollowfernpike::test
