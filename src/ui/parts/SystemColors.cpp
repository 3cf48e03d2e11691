#include "ui/parts/SystemColors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace hollowfernpike {

namespace {

constexpr float accentTintAlpha = 0.1F;

QColor withAlpha(QColor color, float alpha) {
    color.setAlphaF(alpha);
    return color;
}

/// `share` of the first colour, the rest of the second.
QColor mixed(const QColor& first, const QColor& second, float share) {
    const auto channel = [share](float one, float two) { return share * one + (1 - share) * two; };
    return QColor::fromRgbF(channel(first.redF(), second.redF()),
                            channel(first.greenF(), second.greenF()),
                            channel(first.blueF(), second.blueF()));
}

float linear(float channel) {
    return channel <= 0.04045F ? channel / 12.92F : std::pow((channel + 0.055F) / 1.055F, 2.4F);
}

float luminance(const QColor& color) {
    return 0.2126F * linear(color.redF()) + 0.7152F * linear(color.greenF()) +
           0.0722F * linear(color.blueF());
}

float contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05F) / (darker + 0.05F);
}

QColor legible(const QColor& color, const QColor& background, const QColor& text, float wanted) {
    constexpr int steps = 20;
    QColor result = color;
    for (int step = 1; step <= steps && contrast(result, background) < wanted; ++step) {
        result = mixed(text, color, static_cast<float>(step) / steps);
    }
    return result;
}

} // namespace

QColor separatorColor(const QPalette& palette) {
    return withAlpha(palette.color(QPalette::Text), 0.18F);
}

QColor secondaryLabelColor(const QPalette& palette) {
    return withAlpha(palette.color(QPalette::WindowText), 0.7F);
}

QColor accentColor(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QColor accentTintColor(const QPalette& palette) {
    return withAlpha(accentColor(palette), accentTintAlpha);
}

QColor accentTextColor(const QPalette& palette) {
    const QColor accent = accentColor(palette);
    const QColor background = mixed(accent, palette.color(QPalette::Base), accentTintAlpha);
    return legible(accent, background, palette.color(QPalette::Text), 4.5F);
}

QColor systemRedColor(const QPalette& palette) {
    const QColor red(255, 59, 48);
    return legible(red, palette.color(QPalette::Base), palette.color(QPalette::Text), 3);
}

} // namespace hollowfernpike
