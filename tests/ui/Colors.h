#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <utility>

namespace hollowfernpike::test {

/// The contrast ratio of WCAG 2 between two opaque colours, from 1 to 21.
inline double contrastRatio(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double channel) {
            return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// What a colour that may be translucent looks like on an opaque one.
inline QColor laidOver(const QColor& color, const QColor& background) {
    const float alpha = color.alphaF();
    const auto channel = [alpha](float over, float under) {
        return alpha * over + (1 - alpha) * under;
    };
    return QColor::fromRgbF(channel(color.redF(), background.redF()),
                            channel(color.greenF(), background.greenF()),
                            channel(color.blueF(), background.blueF()));
}

inline QPalette lightPalette(const QColor& highlight = QColor(48, 140, 198)) {
    QPalette palette(QColor(239, 239, 239), QColor(239, 239, 239));
    palette.setColor(QPalette::Highlight, highlight);
    return palette;
}

inline QPalette darkPalette(const QColor& highlight = QColor(48, 140, 198)) {
    QPalette palette(QColor(58, 58, 61), QColor(43, 43, 46));
    palette.setColor(QPalette::Base, QColor(30, 30, 32));
    palette.setColor(QPalette::Highlight, highlight);
    return palette;
}

/// Makes a palette the application's for as long as it lives.
class ApplicationPalette {
public:
    explicit ApplicationPalette(const QPalette& palette) : previous_(QGuiApplication::palette()) {
        QGuiApplication::setPalette(palette);
    }
    ApplicationPalette(const ApplicationPalette&) = delete;
    ApplicationPalette& operator=(const ApplicationPalette&) = delete;
    ~ApplicationPalette() { QGuiApplication::setPalette(previous_); }

private:
    QPalette previous_;
};

} // namespace hollowfernpike::test
