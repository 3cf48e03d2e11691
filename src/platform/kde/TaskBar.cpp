#include "platform/kde/TaskBar.h"

#include "platform/wayland/ToolkitWindow.h"

#include <QEvent>
#include <QWindow>

#include <utility>

#include <plasma-shell-client-protocol.h>

namespace hollowfernpike::kde {

namespace {

constexpr std::uint32_t shellVersion = 2; // the first with "skip task bar"

} // namespace

TaskBar::TaskBar()
    : shell_(org_kde_plasma_shell_interface, shellVersion, [this] {
          for (const auto& [window, entry] : entries_) {
              apply(static_cast<QWindow&>(*window));
          }
      }) {}

TaskBar::~TaskBar() {
    for (const auto& [window, entry] : entries_) {
        forgetSurface(window);
    }
    if (auto* const shell = shell_.get<org_kde_plasma_shell>()) {
        org_kde_plasma_shell_destroy(shell);
    }
}

void TaskBar::setShown(QWindow& window, bool shown) {
    if (!entries_.contains(&window)) {
        window.installEventFilter(this);
        wayland::beforeHiding(window, [this, &window] { forgetSurface(&window); });
        connect(&window, &QObject::destroyed, this, [this](QObject* gone) {
            forgetSurface(gone);
            entries_.erase(gone);
        });
    }
    entries_[&window].isShown = shown;
    apply(window);
}

// Each time a window comes to the screen it has a new surface. KWin shows it with its first
// picture, which the toolkit draws after this event.
bool TaskBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose) {
        apply(static_cast<QWindow&>(*watched));
    }
    return false;
}

void TaskBar::apply(QWindow& window) {
    auto& entry = entries_.at(&window);
    auto* const shell = shell_.get<org_kde_plasma_shell>();
    auto* const surface = window.isExposed() ? wayland::surfaceOf(window) : nullptr;
    if (shell == nullptr || surface == nullptr) {
        return;
    }
    if (entry.surface == nullptr) {
        entry.surface = org_kde_plasma_shell_get_surface(shell, surface);
    }
    org_kde_plasma_surface_set_skip_taskbar(entry.surface, entry.isShown ? 0 : 1);
    wl_display_flush(wayland::toolkitDisplay());
}

void TaskBar::forgetSurface(QObject* window) {
    if (auto* const surface = std::exchange(entries_.at(window).surface, nullptr)) {
        org_kde_plasma_surface_destroy(surface);
    }
}

} // namespace hollowfernpike::kde
