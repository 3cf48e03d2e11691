#include "desktop/windows/Screen.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace hollowfernpike::test {

namespace {

template <class T>
std::unique_ptr<T, decltype(&std::free)> held(T* reply) {
    return {reply, &std::free};
}

} // namespace

Screen::Screen(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {}

Screen::~Screen() {
    xcb_disconnect(connection_);
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

void Screen::resize(xcb_window_t window, int width, int height) {
    const std::array size{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    xcb_flush(connection_);
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
