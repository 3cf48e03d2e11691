#pragma once

#include "platform/OwnWindows.h"

#include <functional>
#include <string>

class QWindow;

namespace hollowfernpike::wayland {

/// Our own windows on a Wayland desktop. Main thread only.
class OwnWindows : public platform::OwnWindows {
public:
    /// `bringForward` is the desktop's own way to bring a window of ours to the front, false if
    /// that fails; empty if it has none.
    explicit OwnWindows(std::function<bool(const QWindow&)> bringForward = {});

    /// Compositors without a protocol for it show every window.
    void setShownInTaskBar(std::uintptr_t /*window*/, bool /*shown*/) override {}

    /// The desktop's own way, otherwise a request with the activation token of the user's last
    /// click, launch or key press in our windows, if there was one: it is up to the compositor.
    void bringToFront(std::uintptr_t native) override;

    void useActivationToken(const std::string& token) override;

private:
    std::function<bool(const QWindow&)> bringForward_;
};

} // namespace hollowfernpike::wayland
