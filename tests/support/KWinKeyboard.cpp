#include "support/KWinKeyboard.h"

#include "support/LentConnection.h"
#include "support/WaitUntil.h"

#include <stdexcept>
#include <string>
#include <utility>

#include <fake-input-client-protocol.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

constexpr std::uint32_t offsetOfKernel = 8;  // from the kernel's code of a key to that of XKB
constexpr std::uint32_t capsLock = 1U << 1U; // as XKB counts modifiers
constexpr std::uint32_t numLock = 1U << 4U;

/// What a file holds before its last byte, a zero.
std::string textIn(int file, std::uint32_t size) {
    std::string text(size, '\0');
    const auto length = ::pread(file, text.data(), size, 0);
    text.resize(length > 0 ? static_cast<std::size_t>(length) - 1 : 0);
    return text;
}

} // namespace

class KWinKeyboard::Wire {
public:
    explicit Wire(LentConnection connection) : connection_(std::move(connection)) {
        keys_ =
            connection_.get().bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4);
        org_kde_kwin_fake_input_authenticate(keys_, "tests", "keys are pressed");
        takeSeat();
        takeKeyboard();
    }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    ~Wire() {
        wl_keyboard_destroy(keyboard_);
        wl_seat_destroy(seat_);
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
    const std::string& map() const { return map_; }

private:
    static Wire& self(void* data) { return *static_cast<Wire*>(data); }

    void takeSeat() {
        static constexpr wl_seat_listener listener{
            .capabilities =
                [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
                    self(data).isThere_ = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
                },
            .name = ignoreEvent};
        seat_ = connection_.get().bind<wl_seat>(wl_seat_interface, 1);
        wl_seat_add_listener(seat_, &listener, this);
        const auto isThere = [this] {
            sync();
            return isThere_;
        };
        if (!waitUntil(isThere)) {
            throw std::runtime_error("KWin takes no keyboard");
        }
    }

    // KWin tells of the layouts in the way in which all clients learn of them.
    void takeKeyboard() {
        static constexpr wl_keyboard_listener listener{
            .keymap =
                [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/,
                   std::int32_t file, std::uint32_t size) {
                    self(data).map_ = textIn(file, size);
                    ::close(file);
                },
            .enter = ignoreEvent,
            .leave = ignoreEvent,
            .key = ignoreEvent,
            .modifiers = ignoreEvent,
            .repeat_info = ignoreEvent};
        keyboard_ = wl_seat_get_keyboard(seat_);
        wl_keyboard_add_listener(keyboard_, &listener, this);
    }

    LentConnection connection_;
    org_kde_kwin_fake_input* keys_ = nullptr;
    wl_seat* seat_ = nullptr;
    wl_keyboard* keyboard_ = nullptr;
    bool isThere_ = false;
    std::string map_;
};

KWinKeyboard::KWinKeyboard(KWinDesktop& desktop) : Keyboard(desktop.layout()), desktop_(desktop) {
    reconnect();
}

KWinKeyboard::~KWinKeyboard() {
    letGo();
}

void KWinKeyboard::reconnect() {
    if (wire_) {
        letGo();
        map() = KeyboardMap(desktop_.layout());
    }
    wire_ = std::make_unique<Wire>(desktop_.lendConnection());
    waitForMap();
}

void KWinKeyboard::use(const KeyboardLayout& layout) {
    letGo();
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
    wire_->send(keycode - offsetOfKernel, isDown);
    map().update(keycode, isDown);
}

// They outlast a change of the layouts.
void KWinKeyboard::openLocks() {
    const auto locked = map().modifiers(XKB_STATE_MODS_LOCKED);
    if ((locked & capsLock) != 0) {
        strike({"CAPS"});
    }
    if ((locked & numLock) != 0) {
        strike({"NMLK"});
    }
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
