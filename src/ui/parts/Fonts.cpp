#include "ui/parts/Fonts.h"

#include <QGuiApplication>

namespace hollowfernpike {

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

} // namespace hollowfernpike
