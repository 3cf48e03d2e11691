#include "platform/qt/StatusSymbol.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// Nothing else keeps compiled-in files in a static library; the macro works in the global namespace
// only.
static void initialiseResource() {
    Q_INIT_RESOURCE(status);
}

namespace hollowfernpike::qt {

namespace {

constexpr int panelSizes[] = {16, 22, 24, 32, 48, 64};

QPixmap rendered(QSvgRenderer& drawing, int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawing.render(&painter);
    return pixmap;
}

} // namespace

QIcon statusSymbol(const QString& name) {
    initialiseResource();
    QSvgRenderer drawing(":/symbols/status/" + name + ".svg");
    QIcon icon;
    if (drawing.isValid()) {
        for (const int size : panelSizes) {
            icon.addPixmap(rendered(drawing, size));
        }
    }
    return icon;
}

QIcon themeStatusSymbol() {
    const QString name = QGuiApplication::desktopFileName() + "-symbolic";
    return QIcon::hasThemeIcon(name) ? QIcon::fromTheme(name) : QIcon();
}

} // namespace hollowfernpike::qt
