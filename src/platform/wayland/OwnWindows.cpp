#include "platform/wayland/OwnWindows.h"

#include "platform/wayland/ToolkitWindow.h"

#include <QWindow>

#include <utility>

namespace hollowfernpike::wayland {

OwnWindows::OwnWindows(std::function<bool(const QWindow&)> bringForward)
    : bringForward_(std::move(bringForward)) {}

void OwnWindows::bringToFront(std::uintptr_t native) {
    QWindow* const window = windowWith(native);
    if (window != nullptr && !(bringForward_ && bringForward_(*window))) {
        window->requestActivate();
    }
}

// The toolkit takes it from there with the next request.
void OwnWindows::useActivationToken(const std::string& token) {
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
}

} // namespace hollowfernpike::wayland
