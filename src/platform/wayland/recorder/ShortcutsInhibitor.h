#pragma once

#include "platform/wayland/ToolkitGlobal.h"

struct wl_surface;
struct zwp_keyboard_shortcuts_inhibitor_v1;

namespace hollowfernpike::wayland {

/// Has the compositor pass its own key combinations on to a surface of ours while the surface has
/// the focus (keyboard-shortcuts-inhibit-unstable-v1). They are the compositor's again when this
/// object or the process ends. Does nothing where the protocol is missing. Never waits for the
/// compositor. Main thread only.
class ShortcutsInhibitor {
public:
    /// The surface outlives this object. There may be one inhibitor for a surface at a time.
    explicit ShortcutsInhibitor(wl_surface* surface);
    ShortcutsInhibitor(const ShortcutsInhibitor&) = delete;
    ShortcutsInhibitor& operator=(const ShortcutsInhibitor&) = delete;
    ~ShortcutsInhibitor();

private:
    void inhibit();

    wl_surface* surface_;
    ToolkitGlobal manager_;
    zwp_keyboard_shortcuts_inhibitor_v1* inhibitor_ = nullptr;
};

} // namespace hollowfernpike::wayland
