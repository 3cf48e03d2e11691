#pragma once

class QWindow;
struct wl_surface;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;
struct zwp_keyboard_shortcuts_inhibitor_v1;

namespace hollowfernpike::wayland {

/// Has the compositor pass its own key combinations on to one of our windows
/// (keyboard-shortcuts-inhibit-unstable-v1). They are the compositor's again when this object, the
/// window or the process ends. Does nothing where the protocol is missing. Main thread only.
class ShortcutsInhibitor {
public:
    ShortcutsInhibitor();
    ShortcutsInhibitor(const ShortcutsInhibitor&) = delete;
    ShortcutsInhibitor& operator=(const ShortcutsInhibitor&) = delete;
    ~ShortcutsInhibitor();

    /// From now on for this window, or for none.
    void setWindow(QWindow* window);

private:
    void release();

    zwp_keyboard_shortcuts_inhibit_manager_v1* manager_ = nullptr;
    zwp_keyboard_shortcuts_inhibitor_v1* inhibitor_ = nullptr;
    wl_surface* surface_ = nullptr;
};

} // namespace hollowfernpike::wayland
