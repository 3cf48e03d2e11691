#include "support/Keyboard.h"

#include <stdexcept>

namespace hollowfernpike::test {

void Keyboard::press(std::string_view keyName) {
    move(keyName, true);
}

void Keyboard::release(std::string_view keyName) {
    move(keyName, false);
}

void Keyboard::letAllGo() {
    while (!down_.empty()) {
        sendKey(down_.back(), false);
        down_.pop_back();
    }
    sync();
}

void Keyboard::openLocks() {
    constexpr std::uint32_t capsLock = 1U << 1U; // as XKB counts modifiers
    constexpr std::uint32_t numLock = 1U << 4U;
    const auto locked = map_.modifiers(XKB_STATE_MODS_LOCKED);
    if ((locked & capsLock) != 0) {
        strike({"CAPS"});
    }
    if ((locked & numLock) != 0) {
        strike({"NMLK"});
    }
}

void Keyboard::move(std::string_view keyName, bool isDown) {
    const auto key = keycode(keyName);
    if (key == 0) {
        throw std::invalid_argument("no key " + std::string{keyName});
    }
    std::erase(down_, key);
    if (isDown) {
        down_.push_back(key);
    }
    sendKey(key, isDown);
}

} // namespace hollowfernpike::test
