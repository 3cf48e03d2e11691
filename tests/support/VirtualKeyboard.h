#pragma once

#include "support/Keyboard.h"
#include "support/WaylandConnection.h"

#include <cstdint>
#include <string>

struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace hollowfernpike::test {

/// A keyboard of its own on compositors that take such from their clients.
///
/// A session without devices has no keyboard before this, and clients lose theirs with the object:
/// make it before the clients and keep it as long as they live.
class VirtualKeyboard final : public Keyboard {
public:
    /// `display` is the path of the compositor's socket. Throws std::runtime_error if the
    /// compositor takes no such keyboard, or if there is no such layout.
    explicit VirtualKeyboard(const std::string& display, const KeyboardLayout& layout = {});
    VirtualKeyboard(const VirtualKeyboard&) = delete;
    VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;
    ~VirtualKeyboard() override;

    void use(const KeyboardLayout& layout) override;
    void lockGroup(std::uint32_t group) override;
    void sync() const override { connection_.sync(); }

private:
    void sendKey(std::uint32_t keycode, bool isDown) override;
    void sendModifiers();
    void sendMap();

    WaylandConnection connection_;
    wl_seat* seat_ = nullptr;
    zwp_virtual_keyboard_manager_v1* manager_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

} // namespace hollowfernpike::test
