#include "support/KWinKeyboard.h"

#include "support/LentConnection.h"
#include "support/SeatKeymap.h"
#include "support/WaitUntil.h"

#include <stdexcept>
#include <string>
#include <utility>

#include <fake-input-client-protocol.h>

namespace hollowfernpike::test {

class KWinKeyboard::Wire {
public:
    explicit Wire(LentConnection connection) : connection_(std::move(connection)) {
        keys_ =
            connection_.get().bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4);
        org_kde_kwin_fake_input_authenticate(keys_, "tests", "keys are pressed");
        if (!waitUntil([this] { return keymap_.isThere(); })) {
            throw std::runtime_error("KWin takes no keyboard");
        }
    }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    ~Wire() {
        // In newer descriptions the protocol's own request, which version 4 does not have.
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(keys_));
        sync();
    }

    void sync() const { connection_.get().sync(); }

    void send(std::uint32_t key, bool isDown) const {
        org_kde_kwin_fake_input_keyboard_key(
            keys_, key, isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
        wl_display_flush(connection_.get().get());
    }

    /// The keyboard map that clients have got last.
    const std::string& map() const { return keymap_.text(); }

private:
    LentConnection connection_;
    SeatKeymap keymap_{connection_.get()};
    org_kde_kwin_fake_input* keys_ = nullptr;
};

KWinKeyboard::KWinKeyboard(KWinDesktop& desktop) : Keyboard(desktop.layout()), desktop_(desktop) {
    reconnect();
}

KWinKeyboard::~KWinKeyboard() {
    letAllGo();
}

void KWinKeyboard::reconnect() {
    if (wire_) {
        letAllGo();
        map() = KeyboardMap(desktop_.layout());
    }
    wire_ = std::make_unique<Wire>(desktop_.lendConnection());
    waitForMap();
}

void KWinKeyboard::use(const KeyboardLayout& layout) {
    letAllGo();
    openLocks();
    map() = KeyboardMap(layout);
    desktop_.use(layout);
    waitForMap();
}

void KWinKeyboard::lockGroup(std::uint32_t group) {
    sync();
    desktop_.lockGroup(group);
}

void KWinKeyboard::sync() const {
    wire_->sync();
}

void KWinKeyboard::sendKey(std::uint32_t keycode, bool isDown) {
    wire_->send(keycode - kernelOffset, isDown);
    map().update(keycode, isDown);
}

void KWinKeyboard::waitForMap() {
    const auto expected = map().text();
    const auto isInForce = [&] {
        sync();
        return wire_->map() == expected;
    };
    if (!waitUntil(isInForce)) {
        throw std::runtime_error("KWin has another keyboard map:\n" + wire_->map());
    }
}

} // namespace hollowfernpike::test
