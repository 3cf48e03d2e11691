#include "support/VirtualKeyboard.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1-client-protocol.h>
#include <xkbcommon/xkbcommon.h>

namespace hollowfernpike::test {

namespace {

constexpr std::uint32_t kernelOffset = 8; // from the kernel's code of a key to that of XKB

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

class VirtualKeyboard::Map {
public:
    explicit Map(const KeyboardLayout& layout)
        : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref),
          keymap_(nullptr, &xkb_keymap_unref), state_(nullptr, &xkb_state_unref) {
        const xkb_rule_names names{.rules = "evdev",
                                   .model = "pc105",
                                   .layout = layout.layouts.c_str(),
                                   .variant = "",
                                   .options = layout.options.c_str()};
        keymap_.reset(
            xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
        if (!keymap_) {
            throw std::runtime_error("no keyboard layout " + layout.layouts);
        }
        state_.reset(xkb_state_new(keymap_.get()));
    }

    xkb_keymap* keymap() const { return keymap_.get(); }

    void update(std::uint32_t keycode, bool isDown) {
        xkb_state_update_key(state_.get(), keycode, isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
    }

    void lockGroup(std::uint32_t group) {
        xkb_state_update_mask(state_.get(), modifiers(XKB_STATE_MODS_DEPRESSED),
                              modifiers(XKB_STATE_MODS_LATCHED), modifiers(XKB_STATE_MODS_LOCKED),
                              0, 0, group);
    }

    std::uint32_t modifiers(xkb_state_component kind) const {
        return xkb_state_serialize_mods(state_.get(), kind);
    }

    std::uint32_t group() const {
        return xkb_state_serialize_layout(state_.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    }

private:
    std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context_;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_;
    std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state_;
};

VirtualKeyboard::VirtualKeyboard(const std::string& display, const KeyboardLayout& layout)
    : connection_(display), map_(std::make_unique<Map>(layout)) {
    seat_ = connection_.bind<wl_seat>(wl_seat_interface, 1);
    manager_ = connection_.bind<zwp_virtual_keyboard_manager_v1>(
        zwp_virtual_keyboard_manager_v1_interface, 1);
    keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager_, seat_);
    sendMap();
}

VirtualKeyboard::~VirtualKeyboard() {
    letGo();
    zwp_virtual_keyboard_v1_destroy(keyboard_);
    zwp_virtual_keyboard_manager_v1_destroy(manager_);
    wl_seat_destroy(seat_);
    sync();
}

void VirtualKeyboard::use(const KeyboardLayout& layout) {
    letGo();
    map_ = std::make_unique<Map>(layout);
    sendMap();
}

void VirtualKeyboard::lockGroup(std::uint32_t group) {
    map_->lockGroup(group);
    sendModifiers();
}

void VirtualKeyboard::press(std::string_view keyName) {
    const auto key = keycode(keyName);
    if (key == 0) {
        throw std::invalid_argument("no key " + std::string{keyName});
    }
    down_.push_back(key);
    sendKey(key, true);
}

void VirtualKeyboard::release(std::string_view keyName) {
    const auto key = keycode(keyName);
    if (key == 0) {
        throw std::invalid_argument("no key " + std::string{keyName});
    }
    std::erase(down_, key);
    sendKey(key, false);
}

void VirtualKeyboard::strike(const std::vector<std::string>& keyNames) {
    for (const auto& name : keyNames) {
        press(name);
    }
    for (auto name = keyNames.rbegin(); name != keyNames.rend(); ++name) {
        release(*name);
    }
    sync(); // more than the connection takes at once would break it
}

std::uint32_t VirtualKeyboard::keycode(std::string_view keyName) const {
    const auto key = xkb_keymap_key_by_name(map_->keymap(), std::string{keyName}.c_str());
    return key == XKB_KEYCODE_INVALID ? 0 : key;
}

// The compositor does not derive the modifiers of such a keyboard from its keys. A real keyboard's
// change after the key is delivered.
void VirtualKeyboard::sendKey(std::uint32_t keycode, bool isDown) {
    zwp_virtual_keyboard_v1_key(keyboard_, now(), keycode - kernelOffset,
                                isDown ? WL_KEYBOARD_KEY_STATE_PRESSED
                                       : WL_KEYBOARD_KEY_STATE_RELEASED);
    map_->update(keycode, isDown);
    sendModifiers();
}

void VirtualKeyboard::sendModifiers() {
    zwp_virtual_keyboard_v1_modifiers(keyboard_, map_->modifiers(XKB_STATE_MODS_DEPRESSED),
                                      map_->modifiers(XKB_STATE_MODS_LATCHED),
                                      map_->modifiers(XKB_STATE_MODS_LOCKED), map_->group());
    wl_display_flush(connection_.get());
}

void VirtualKeyboard::sendMap() {
    const std::unique_ptr<char, decltype(&std::free)> text(
        xkb_keymap_get_as_string(map_->keymap(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    const std::string description = text.get();
    const int file = fileWith(description);
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<std::uint32_t>(description.size() + 1));
    sync();
    ::close(file);
    sendModifiers();
}

void VirtualKeyboard::letGo() {
    while (!down_.empty()) {
        sendKey(down_.back(), false);
        down_.pop_back();
    }
    sync();
}

} // namespace hollowfernpike::test
