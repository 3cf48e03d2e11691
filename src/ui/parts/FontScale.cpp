#include "ui/parts/FontScale.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace hollowfernpike {

double fontScale() {
    constexpr double smallestUsual = 9;
    constexpr double largestUsual = 12;
    const double size = QFontInfo(QGuiApplication::font()).pointSizeF();
    return size / std::clamp(size, smallestUsual, largestUsual);
}

int grown(int length) {
    return static_cast<int>(std::lround(length * std::max(1.0, fontScale())));
}

} // namespace hollowfernpike
