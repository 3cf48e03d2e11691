#include "ui/parts/HintLabel.h"

#include "ui/parts/Fonts.h"
#include "ui/parts/SystemColors.h"

#include <QPainter>

namespace hollowfernpike {

HintLabel::HintLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setFont(systemFont(14, QFont::Normal));
    setAlignment(Qt::AlignCenter);
}

void HintLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(secondaryLabelColor(palette()));
    painter.drawText(rect(), static_cast<int>(alignment()), text());
}

} // namespace hollowfernpike
