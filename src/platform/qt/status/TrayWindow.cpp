#include "platform/qt/status/TrayWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace hollowfernpike::qt {

namespace {

constexpr int usualSize = 22;
constexpr int largestSize = 512; // beyond it nothing is painted
constexpr int offScreen = -1000; // until the tray has taken it in

} // namespace

TrayWindow::TrayWindow(platform::SystemTray& tray, std::function<void(QPoint)> onClick)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                           Qt::WindowDoesNotAcceptFocus),
      onClick_(std::move(onClick)) {
    setAttribute(Qt::WA_TranslucentBackground, tray.blendsWindows());
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_QuitOnClose, false);
    setGeometry(offScreen, offScreen, usualSize, usualSize);
    create();
    windowHandle()->setMinimumSize({usualSize, usualSize}); // some trays give no more
    show();
    tray.embed(winId());
}

void TrayWindow::setImage(const QIcon& image, const QString& description) {
    image_ = image;
    setToolTip(description);
    setAccessibleName(description);
    setWindowTitle(description);
    update();
}

// A modal dialog blocks all windows but its own, and we become one of those: the menu leads back to
// a dialog that is covered, and quits.
bool TrayWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        windowHandle()->setTransientParent(QGuiApplication::modalWindow());
    }
    return QWidget::event(event);
}

void TrayWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton || event->button() == Qt::RightButton) {
        onClick_(event->globalPosition().toPoint());
    }
}

// Where the tray does not blend windows, the server has painted its ground into ours. The toolkit
// would paint over that ground, so we grab it and draw it below the symbol: as much of it as we
// know of, because the tray may have resized us since, and the server breaks the connection of
// those who ask for gigabytes.
void TrayWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!testAttribute(Qt::WA_TranslucentBackground)) {
        if (ground_.isNull()) {
            ground_ = screen()->grabWindow(winId(), 0, 0, width(), height());
        }
        painter.drawPixmap(rect(), ground_);
    }
    image_.paint(&painter, rect());
}

// Some tray may give any size; the toolkit would keep pictures of that size.
void TrayWindow::resizeEvent(QResizeEvent* event) {
    ground_ = {};
    setUpdatesEnabled(width() <= largestSize && height() <= largestSize);
    update();
    QWidget::resizeEvent(event);
}

} // namespace hollowfernpike::qt
