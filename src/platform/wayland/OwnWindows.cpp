#include "platform/wayland/OwnWindows.h"

#include "platform/wayland/ToolkitWindow.h"

#include <QWindow>

#include <utility>

namespace hollowfernpike::wayland {

namespace {

// The toolkit takes it from there with the next request.
void keepForNextRequest(const std::string& token) {
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
}

} // namespace

BringForward requestWith(std::function<std::string(const QWindow&)> token) {
    return [token = std::move(token)](const QWindow& window) {
        if (const auto fresh = token(window); !fresh.empty()) {
            keepForNextRequest(fresh);
        }
        return false;
    };
}

OwnWindows::OwnWindows(BringForward bringForward) : bringForward_(std::move(bringForward)) {}

void OwnWindows::bringToFront(std::uintptr_t native) {
    QWindow* const window = windowWith(native);
    if (window != nullptr && !(bringForward_ && bringForward_(*window))) {
        window->requestActivate();
    }
}

void OwnWindows::useActivationToken(const std::string& token) {
    keepForNextRequest(token);
}

} // namespace hollowfernpike::wayland
