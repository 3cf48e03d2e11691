#pragma once

#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/keyboard/Keymap.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

struct wl_keyboard;
struct wl_seat;

namespace hollowfernpike::wayland {

/// The keyboard of the first seat. The compositor tells its map to every client; its keys only to
/// the one that has the focus, which this connection never gets. Main thread only.
class SeatKeyboard {
public:
    /// The connection outlives this object.
    explicit SeatKeyboard(Connection& connection);
    SeatKeyboard(const SeatKeyboard&) = delete;
    SeatKeyboard& operator=(const SeatKeyboard&) = delete;
    ~SeatKeyboard();

    /// Null before the seat has had a keyboard.
    const Keymap* keymap() const { return keymap_.get(); }

    /// How long a key is held before it repeats; 0 as long as the compositor has not told.
    std::chrono::milliseconds repeatDelay() const { return repeatDelay_; }

    /// Called when the map is another than before.
    std::function<void()> onKeymapChange;

private:
    void setHasKeyboard(bool hasKeyboard);
    void readKeymap(std::uint32_t format, int descriptor, std::uint32_t size);

    wl_seat* seat_;
    wl_keyboard* keyboard_ = nullptr;
    std::chrono::milliseconds repeatDelay_{};
    std::string text_;
    std::unique_ptr<Keymap> keymap_;
};

} // namespace hollowfernpike::wayland
