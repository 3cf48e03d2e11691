#include "platform/wayland/keyboard/SeatKeyboard.h"

#include "platform/posix/Descriptor.h"

#include <utility>

#include <sys/mman.h>
#include <wayland-client-protocol.h>

namespace hollowfernpike::wayland {

namespace {

/// The first version whose keyboards can be released; its maps are to be mapped privately.
constexpr std::uint32_t seatVersion = 7;

std::string mappedText(int descriptor, std::size_t size) {
    void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (memory == MAP_FAILED) {
        return {};
    }
    std::string text(static_cast<const char*>(memory), size);
    ::munmap(memory, size);
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

} // namespace

SeatKeyboard::SeatKeyboard(Connection& connection)
    : seat_(connection.bind<wl_seat>(wl_seat_interface, seatVersion)) {
    static constexpr wl_seat_listener listener{
        .capabilities =
            [](void* self, wl_seat*, std::uint32_t capabilities) {
                static_cast<SeatKeyboard*>(self)->setHasKeyboard(
                    (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
            },
        .name = [](void*, wl_seat*, const char*) {},
    };
    if (seat_ != nullptr) {
        wl_seat_add_listener(seat_, &listener, this);
        connection.roundTrip(); // tells whether there is a keyboard,
        connection.roundTrip(); // and this its map
    }
}

SeatKeyboard::~SeatKeyboard() {
    setHasKeyboard(false);
    if (seat_ != nullptr) {
        wl_seat_destroy(seat_);
    }
}

void SeatKeyboard::setHasKeyboard(bool hasKeyboard) {
    static constexpr wl_keyboard_listener listener{
        .keymap =
            [](void* self, wl_keyboard*, std::uint32_t format, int descriptor, std::uint32_t size) {
                static_cast<SeatKeyboard*>(self)->readKeymap(format, descriptor, size);
            },
        .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
        .key = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                  std::uint32_t) {},
        .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t, std::uint32_t) {},
        .repeat_info =
            [](void* self, wl_keyboard*, std::int32_t, std::int32_t delay) {
                static_cast<SeatKeyboard*>(self)->repeatDelay_ = std::chrono::milliseconds(delay);
            },
    };
    if (hasKeyboard == (keyboard_ != nullptr)) {
        return;
    }
    if (hasKeyboard) {
        keyboard_ = wl_seat_get_keyboard(seat_);
        wl_keyboard_add_listener(keyboard_, &listener, this);
    } else {
        wl_keyboard_release(std::exchange(keyboard_, nullptr));
    }
}

void SeatKeyboard::readKeymap(std::uint32_t format, int descriptor, std::uint32_t size) {
    const posix::Descriptor file(descriptor);
    if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) {
        return;
    }
    auto text = mappedText(file.get(), size);
    if (text == text_) {
        return;
    }
    keymap_ = Keymap::parse(text);
    text_ = std::move(text);
    if (onKeymapChange) {
        onKeymapChange();
    }
}

} // namespace hollowfernpike::wayland
