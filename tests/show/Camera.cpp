#include "show/Camera.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <xcb/xcb.h>

namespace hollowfernpike::show {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto stillness = 200ms;
/// A connection to a display that looks at its screen.
class Eye {
public:
    explicit Eye(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {}
    Eye(const Eye&) = delete;
    Eye& operator=(const Eye&) = delete;
    ~Eye() { xcb_disconnect(connection_); }

    QImage look() {
        if (xcb_connection_has_error(connection_) != 0) {
            throw std::runtime_error("the display cannot be reached");
        }
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const auto width = screen->width_in_pixels;
        const auto height = screen->height_in_pixels;
        const auto question = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0,
                                            0, width, height, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(connection_, question, nullptr), &std::free);
        if (!reply) {
            throw std::runtime_error("the screen shows no picture");
        }
        return QImage(xcb_get_image_data(reply.get()), width, height, QImage::Format_RGB32).copy();
    }

private:
    xcb_connection_t* connection_;
};

/// The first and the last place that the condition holds for; the first is behind the last if there
/// is none.
template <class Condition>
std::pair<int, int> ends(int first, int last, Condition condition) {
    while (first <= last && !condition(first)) {
        ++first;
    }
    while (first <= last && !condition(last)) {
        --last;
    }
    return {first, last};
}

} // namespace

QImage glance(const std::string& display) {
    return Eye(display).look();
}

QImage picture(const std::string& display) {
    Eye eye(display);
    QImage picture;
    auto since = Clock::now();
    const auto isStill = [&] {
        auto next = eye.look();
        if (next != picture) {
            picture = std::move(next);
            since = Clock::now();
        }
        return Clock::now() - since >= stillness;
    };
    if (!test::waitUntil(isStill)) {
        throw std::runtime_error("the screen does not come to rest");
    }
    return picture;
}

void save(const QImage& picture, const std::filesystem::path& file) {
    std::filesystem::create_directories(file.parent_path());
    if (!picture.save(QString::fromStdString(file.string()), "PNG", 0)) {
        throw std::runtime_error("no picture can be saved as " + file.string());
    }
}

QImage cropped(const QImage& picture, const QRect& within, QRgb background, int margin) {
    const auto isShown = [&](int x, int y) { return picture.pixel(x, y) != background; };
    const auto rows = ends(within.top(), within.bottom(), [&](int y) {
        const auto row = ends(within.left(), within.right(), [&](int x) { return isShown(x, y); });
        return row.first <= row.second;
    });
    if (rows.first > rows.second) {
        return {};
    }
    const auto columns = ends(within.left(), within.right(), [&](int x) {
        const auto column = ends(rows.first, rows.second, [&](int y) { return isShown(x, y); });
        return column.first <= column.second;
    });
    const QRect shown(QPoint(columns.first, rows.first), QPoint(columns.second, rows.second));
    return picture.copy(shown.adjusted(-margin, -margin, margin, margin) & picture.rect());
}

} // namespace hollowfernpike::show
