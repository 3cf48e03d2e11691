#include "show/Camera.h"

#include "support/WaitUntil.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <QImage>
#include <xcb/xcb.h>

namespace hollowfernpike::show {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto stillness = 200ms;
constexpr auto patience = 10s;

QImage look(xcb_connection_t* connection) {
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0,
                                      screen->width_in_pixels, screen->height_in_pixels, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection, cookie, nullptr), &std::free);
    if (!reply) {
        throw std::runtime_error("the screen shows no picture");
    }
    return QImage(xcb_get_image_data(reply.get()), screen->width_in_pixels,
                  screen->height_in_pixels, QImage::Format_RGB32)
        .copy();
}

QImage lookWhenStill(xcb_connection_t* connection) {
    QImage picture;
    auto since = Clock::now();
    const auto isStill = [&] {
        auto next = look(connection);
        if (next != picture) {
            picture = std::move(next);
            since = Clock::now();
        }
        return Clock::now() - since >= stillness;
    };
    if (!test::waitUntil(isStill, patience)) {
        throw std::runtime_error("the screen does not come to rest");
    }
    return picture;
}

} // namespace

void takePicture(const std::string& display, const std::filesystem::path& file) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(display.c_str(), nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0 ||
        !lookWhenStill(connection.get()).save(QString::fromStdString(file.string()), "PNG")) {
        throw std::runtime_error("no picture can be saved as " + file.string());
    }
}

} // namespace hollowfernpike::show
