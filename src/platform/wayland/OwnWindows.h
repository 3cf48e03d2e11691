#pragma once

#include "platform/OwnWindows.h"

#include <functional>
#include <string>

class QWindow;

namespace hollowfernpike::wayland {

/// Brings a window of ours to the front in the desktop's own way; false if that fails.
using BringForward = std::function<bool(const QWindow&)>;

/// For a desktop that gives activation tokens at any time: has the next request carry one of them,
/// and leaves it to that. `token` may return an empty text.
BringForward requestWith(std::function<std::string(const QWindow&)> token);

/// Our own windows on a Wayland desktop. Main thread only.
class OwnWindows : public platform::OwnWindows {
public:
    /// `bringForward` is empty if the desktop has no way of its own.
    explicit OwnWindows(BringForward bringForward = {});

    /// Compositors without a protocol for it show every window.
    void setShownInTaskBar(std::uintptr_t /*window*/, bool /*shown*/) override {}

    /// The desktop's own way, otherwise a request with the activation token of the user's last
    /// click, launch or key press in our windows, if there was one: it is up to the compositor.
    void bringToFront(std::uintptr_t native) override;

    void useActivationToken(const std::string& token) override;

private:
    BringForward bringForward_;
};

} // namespace hollowfernpike::wayland
