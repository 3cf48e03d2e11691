#include "desktop/windows/Screen.h"

#include "desktop/XReplies.h"

#include <array>
#include <cstring>
#include <string_view>

namespace hollowfernpike::test {

namespace {

bool isOfUtility(xcb_connection_t* connection, xcb_window_t window) {
    const auto reply = held(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64),
        nullptr));
    if (!reply) {
        return false;
    }
    const std::string_view name(
        static_cast<const char*>(xcb_get_property_value(reply.get())),
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    return name.starts_with("hollowfernpike");
}

} // namespace

Screen::Screen(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {}

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

std::vector<Place> Screen::popups() {
    std::vector<Place> places;
    for (const auto& seen : utilityWindows()) {
        if (seen.isInRoot && seen.isUnmanaged) {
            places.push_back(placeOf(seen.window));
        }
    }
    return places;
}

Place Screen::statusSymbol() {
    constexpr int most = 100; // larger ones are windows in frames
    for (const auto& seen : utilityWindows()) {
        const auto place = placeOf(seen.window);
        if (!seen.isInRoot && place.width <= most && place.height <= most) {
            return place;
        }
    }
    return {};
}

std::vector<Screen::Seen> Screen::utilityWindows() {
    std::vector<Seen> windows;
    collect(root_, windows);
    return windows;
}

void Screen::collect(xcb_window_t parent, std::vector<Seen>& into) {
    const auto tree =
        held(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, parent), nullptr));
    if (!tree) {
        return;
    }
    const auto* children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        const auto window = children[index];
        const auto attributes = held(xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, window), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
            continue;
        }
        if (isOfUtility(connection_, window)) {
            into.push_back({.window = window,
                            .isInRoot = parent == root_,
                            .isUnmanaged = attributes->override_redirect != 0});
        } else {
            collect(window, into);
        }
    }
}

} // namespace hollowfernpike::test
