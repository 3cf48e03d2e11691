#include "platform/qt/StatusSymbol.h"

#include "platform/qt/KeyboardDrawing.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QStandardPaths>

#include <algorithm>

namespace hollowfernpike::qt {

namespace {

constexpr int panelSizes[] = {16, 22, 24, 32, 48, 64};

/// The name of the installed symbol of ours; empty if there is none.
QString installedSymbol() {
    const QString name = QGuiApplication::desktopFileName() + "-symbolic";
    const QString file = "icons/hicolor/symbolic/apps/" + name + ".svg";
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty() ? QString()
                                                                                       : name;
}

/// Carries the installed symbol's name for panels that paint it in their own colour, and is drawn
/// by us for all others. The toolkit's icon from a theme would read the whole theme for its name,
/// and keep it.
class Engine final : public QIconEngine {
public:
    QString iconName() override { return name_; }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int size : panelSizes) {
            sizes.emplace_back(size, size);
        }
        return sizes;
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return QPixmap::fromImage(keyboardDrawing(std::min(size.width(), size.height())));
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatioF();
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        QPixmap picture = pixmap((QSizeF(square.size()) * scale).toSize(), mode, state);
        picture.setDevicePixelRatio(scale);
        painter->drawPixmap(square.topLeft(), picture);
    }

    QIconEngine* clone() const override { return new Engine(*this); }

private:
    QString name_ = installedSymbol();
};

} // namespace

QIcon statusSymbol(const QString& name) {
    return name == "keyboard" ? QIcon(new Engine) : QIcon();
}

} // namespace hollowfernpike::qt
