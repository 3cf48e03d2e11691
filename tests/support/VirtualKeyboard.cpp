#include "support/VirtualKeyboard.h"

#include <chrono>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1-client-protocol.h>

namespace hollowfernpike::test {

namespace {

std::uint32_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

/// A file in memory that holds the text and a zero after it.
int fileWith(const std::string& text) {
    const int file = ::memfd_create("keymap", MFD_CLOEXEC);
    const auto size = text.size() + 1;
    if (file < 0 || ::write(file, text.c_str(), size) != static_cast<ssize_t>(size)) {
        throw std::system_error(errno, std::generic_category(), "keymap");
    }
    return file;
}

} // namespace

VirtualKeyboard::VirtualKeyboard(const std::string& display, const KeyboardLayout& layout)
    : Keyboard(layout), connection_(display) {
    seat_ = connection_.bind<wl_seat>(wl_seat_interface, 1);
    manager_ = connection_.bind<zwp_virtual_keyboard_manager_v1>(
        zwp_virtual_keyboard_manager_v1_interface, 1);
    keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager_, seat_);
    sendMap();
}

VirtualKeyboard::~VirtualKeyboard() {
    letAllGo();
    zwp_virtual_keyboard_v1_destroy(keyboard_);
    zwp_virtual_keyboard_manager_v1_destroy(manager_);
    wl_seat_destroy(seat_);
    sync();
}

void VirtualKeyboard::use(const KeyboardLayout& layout) {
    letAllGo();
    map() = KeyboardMap(layout);
    sendMap();
}

void VirtualKeyboard::lockGroup(std::uint32_t group) {
    map().lockGroup(group);
    sendModifiers();
}

// The compositor does not derive the modifiers of such a keyboard from its keys. A real keyboard's
// change after the key is delivered.
void VirtualKeyboard::sendKey(std::uint32_t keycode, bool isDown) {
    zwp_virtual_keyboard_v1_key(keyboard_, now(), keycode - kernelOffset,
                                isDown ? WL_KEYBOARD_KEY_STATE_PRESSED
                                       : WL_KEYBOARD_KEY_STATE_RELEASED);
    map().update(keycode, isDown);
    sendModifiers();
}

void VirtualKeyboard::sendModifiers() {
    zwp_virtual_keyboard_v1_modifiers(keyboard_, map().modifiers(XKB_STATE_MODS_DEPRESSED),
                                      map().modifiers(XKB_STATE_MODS_LATCHED),
                                      map().modifiers(XKB_STATE_MODS_LOCKED), map().group());
    wl_display_flush(connection_.get());
}

void VirtualKeyboard::sendMap() {
    const auto description = map().text();
    const int file = fileWith(description);
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<std::uint32_t>(description.size() + 1));
    sync();
    ::close(file);
    sendModifiers();
}

} // namespace hollowfernpike::test
