#include "support/KWinKeyboard.h"

#include "support/WaitUntil.h"

#include <stdexcept>

#include <fake-input-client-protocol.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

constexpr std::uint32_t kernelOffset = 8;    // from the kernel's code of a key to that of XKB
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

KWinKeyboard::KWinKeyboard(KWinDesktop& desktop)
    : Keyboard(desktop.layout()), desktop_(desktop), connection_(desktop.lendConnection()) {
    keys_ = connection_.get().bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4);
    org_kde_kwin_fake_input_authenticate(keys_, "tests", "keys are pressed");
    takeKeyboard();
    waitForMap();
}

KWinKeyboard::~KWinKeyboard() {
    letGo();
    wl_keyboard_destroy(keyboard_);
    wl_seat_destroy(seat_);
    org_kde_kwin_fake_input_destroy(keys_);
    sync();
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

void KWinKeyboard::sendKey(std::uint32_t keycode, bool isDown) {
    org_kde_kwin_fake_input_keyboard_key(keys_, keycode - kernelOffset,
                                         isDown ? WL_KEYBOARD_KEY_STATE_PRESSED
                                                : WL_KEYBOARD_KEY_STATE_RELEASED);
    map().update(keycode, isDown);
    wl_display_flush(connection_.get().get());
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

// KWin tells of the layouts in the way in which all clients learn of them.
void KWinKeyboard::takeKeyboard() {
    static constexpr wl_seat_listener seatListener{
        .capabilities =
            [](void* self, wl_seat* /*seat*/, std::uint32_t capabilities) {
                static_cast<KWinKeyboard*>(self)->isThere_ =
                    (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
            },
        .name = ignoreEvent};
    static constexpr wl_keyboard_listener keyboardListener{
        .keymap =
            [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/, std::int32_t file,
               std::uint32_t size) {
                static_cast<KWinKeyboard*>(self)->receivedMap_ = textIn(file, size);
                ::close(file);
            },
        .enter = ignoreEvent,
        .leave = ignoreEvent,
        .key = ignoreEvent,
        .modifiers = ignoreEvent,
        .repeat_info = ignoreEvent};
    seat_ = connection_.get().bind<wl_seat>(wl_seat_interface, 1);
    wl_seat_add_listener(seat_, &seatListener, this);
    const auto isThere = [this] {
        sync();
        return isThere_;
    };
    if (!waitUntil(isThere)) {
        throw std::runtime_error("KWin takes no keyboard");
    }
    keyboard_ = wl_seat_get_keyboard(seat_);
    wl_keyboard_add_listener(keyboard_, &keyboardListener, this);
}

void KWinKeyboard::waitForMap() {
    const auto expected = map().text();
    const auto isInForce = [&] {
        sync();
        return receivedMap_ == expected;
    };
    if (!waitUntil(isInForce)) {
        throw std::runtime_error("KWin has another keyboard map:\n" + receivedMap_);
    }
}

} // namespace hollowfernpike::test
