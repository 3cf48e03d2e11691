#include "ui/parts/HotkeyBadge.h"

#include "ui/parts/SystemColors.h"

#include <QFontDatabase>
#include <QPainter>

namespace hollowfernpike {

namespace {

QFont badgeFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(13);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

HotkeyBadge::HotkeyBadge(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFont(badgeFont());
    setAlignment(Qt::AlignCenter);
}

void HotkeyBadge::paintEvent(QPaintEvent*) {
    constexpr qreal cornerRadius = 4;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accentTintColor(palette()));
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    painter.setPen(accentTextColor(palette()));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

} // namespace hollowfernpike
