#include "platform/wayland/ToolkitWindow.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <utility>

#include <qpa/qplatformnativeinterface.h>

namespace hollowfernpike::wayland {

namespace {

QPlatformNativeInterface& toolkit() {
    return *QGuiApplication::platformNativeInterface();
}

} // namespace

wl_display* toolkitDisplay() {
    return static_cast<wl_display*>(toolkit().nativeResourceForIntegration("wl_display"));
}

wl_seat* toolkitSeat() {
    return static_cast<wl_seat*>(toolkit().nativeResourceForIntegration("wl_seat"));
}

wl_surface* surfaceOf(QWindow& window) {
    return window.handle() == nullptr
               ? nullptr
               : static_cast<wl_surface*>(toolkit().nativeResourceForWindow("surface", &window));
}

// The toolkit sends the event Hide only afterwards.
QMetaObject::Connection beforeHiding(QWindow& window, std::function<void()> handler) {
    return QObject::connect(&window, &QWindow::visibleChanged,
                            [handler = std::move(handler)](bool isVisible) {
                                if (!isVisible) {
                                    handler();
                                }
                            });
}

QWindow* windowWith(std::uintptr_t identifier) {
    const auto windows = QGuiApplication::topLevelWindows();
    const auto found = std::ranges::find_if(windows, [&](const QWindow* window) {
        return window->handle() != nullptr && window->winId() == identifier;
    });
    return found == windows.end() ? nullptr : *found;
}

} // namespace hollowfernpike::wayland
