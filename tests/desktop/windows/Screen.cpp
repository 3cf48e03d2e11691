#include "desktop/windows/Screen.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

template <class T>
std::unique_ptr<T, decltype(&std::free)> held(T* reply) {
    return {reply, &std::free};
}

} // namespace

Screen::Screen(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) ==
        0) {
        throw std::runtime_error("no display " + display);
    }
}

Screen::~Screen() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

std::string Screen::titleOf(xcb_window_t window) {
    xcb_ewmh_get_utf8_strings_reply_t title{};
    const auto question = xcb_ewmh_get_wm_name(&ewmh_, window);
    if (xcb_ewmh_get_wm_name_reply(&ewmh_, question, &title, nullptr) == 0) {
        return {};
    }
    std::string text(title.strings, title.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&title);
    return text;
}

Place Screen::placeOf(xcb_window_t window) {
    const auto size =
        held(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    if (!size) {
        return {};
    }
    const auto corner = held(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, size->root, 0, 0), nullptr));
    return corner ? Place{corner->dst_x, corner->dst_y, size->width, size->height} : Place{};
}

std::vector<std::uint32_t> Screen::column(xcb_window_t window, int x) {
    const auto height = static_cast<std::uint16_t>(placeOf(window).height);
    const auto image = held(
        xcb_get_image_reply(connection_,
                            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                          static_cast<std::int16_t>(x), 0, 1, height, 0xFFFFFF),
                            nullptr));
    if (!image) {
        return {};
    }
    const auto bytes = static_cast<std::size_t>(xcb_get_image_data_length(image.get()));
    std::vector<std::uint32_t> colors(bytes / sizeof(std::uint32_t));
    std::memcpy(colors.data(), xcb_get_image_data(image.get()),
                colors.size() * sizeof(std::uint32_t));
    return colors;
}

} // namespace hollowfernpike::test
