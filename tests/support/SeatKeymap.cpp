#include "support/SeatKeymap.h"

#include <cstdint>

#include <unistd.h>

namespace hollowfernpike::test {

namespace {

/// What a file holds before its last byte, a zero.
std::string textIn(int file, std::uint32_t size) {
    std::string text(size, '\0');
    const auto length = ::pread(file, text.data(), size, 0);
    text.resize(length > 0 ? static_cast<std::size_t>(length) - 1 : 0);
    return text;
}

} // namespace

SeatKeymap::SeatKeymap(WaylandConnection& connection)
    : connection_(connection), seat_(connection.bind<wl_seat>(wl_seat_interface, 1)) {
    static constexpr wl_seat_listener seatListener{
        .capabilities =
            [](void* self, wl_seat* /*seat*/, std::uint32_t capabilities) {
                static_cast<SeatKeymap*>(self)->isThere_ =
                    (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
            },
        .name = ignoreEvent};
    wl_seat_add_listener(seat_, &seatListener, this);
}

SeatKeymap::~SeatKeymap() {
    if (keyboard_ != nullptr) {
        wl_keyboard_destroy(keyboard_);
    }
    wl_seat_destroy(seat_);
}

bool SeatKeymap::isThere() {
    connection_.sync();
    if (isThere_ && keyboard_ == nullptr) {
        listen();
        connection_.sync();
    }
    return isThere_;
}

void SeatKeymap::listen() {
    static constexpr wl_keyboard_listener listener{
        .keymap =
            [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/, std::int32_t file,
               std::uint32_t size) {
                static_cast<SeatKeymap*>(self)->text_ = textIn(file, size);
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

} // namespace hollowfernpike::test
