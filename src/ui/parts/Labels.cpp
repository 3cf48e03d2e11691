#include "ui/parts/Labels.h"

#include "ui/parts/FontScale.h"
#include "ui/parts/SystemColors.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QStylePainter>
#include <QTextLayout>
#include <QToolTip>

#include <cmath>

namespace hollowfernpike {

namespace {

constexpr int smallestFont = 9;

QTextOption wrapping() {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

/// The text's lines in a column of `width`; what goes beyond `count` lines is in the last one.
QStringList wrapped(const QString& text, const QFont& font, int width, int count) {
    QTextLayout layout(text, font);
    layout.setTextOption(wrapping());
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const bool isLast = lines.size() + 1 == count;
        const QString rest = text.sliced(line.textStart());
        lines += isLast ? rest : rest.first(line.textLength());
        if (isLast) {
            break;
        }
    }
    layout.endLayout();
    return lines;
}

int pixels(int usualSize) {
    return static_cast<int>(std::lround(usualSize * fontScale()));
}

QFont badgeFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixels(13));
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

QSize MeasuredText::size(const QString& text, const QFont& font) {
    if (size_.isEmpty() || text_ != text || font_ != font) {
        text_ = text;
        font_ = font;
        size_ = QFontMetrics(font).size(Qt::TextSingleLine, text);
    }
    return size_;
}

FittingLabel::FittingLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void FittingLabel::setMaximumLineCount(int count) {
    maximumLineCount_ = count;
    update();
}

QSize FittingLabel::sizeHint() const {
    return measured_.size(text(), font());
}

QStringList FittingLabel::shownLines() const {
    if (fitsInOneLine()) {
        return {text()};
    }
    const QFont font = fontForLines();
    QStringList lines = wrapped(text(), font, width(), maximumLineCount_);
    lines.back() = QFontMetrics(font).elidedText(lines.back(), Qt::ElideRight, width());
    return lines;
}

bool FittingLabel::fitsInOneLine() const {
    return sizeHint().width() <= width();
}

QFont FittingLabel::fontForLines() const {
    QFont font = this->font();
    if (maximumLineCount_ > 1) {
        while (QFontMetrics(font).lineSpacing() * maximumLineCount_ > height() &&
               font.pixelSize() > smallestFont) {
            font.setPixelSize(font.pixelSize() - 1);
        }
    }
    return font;
}

bool FittingLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && !fitsInOneLine()) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), "<p>" + text().toHtmlEscaped() + "</p>" + toolTip(),
                           this);
        return true;
    }
    return QLabel::event(event);
}

void FittingLabel::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const QStringList lines = shownLines();
    painter.setFont(fitsInOneLine() ? font() : fontForLines());
    const int lineHeight = lines.size() == 1 ? height() : painter.fontMetrics().lineSpacing();
    QRect line(0, 0, width(), lineHeight);
    line.moveTop((height() - lineHeight * static_cast<int>(lines.size())) / 2);
    for (const QString& text : lines) {
        painter.drawItemText(line, static_cast<int>(alignment()) | Qt::TextSingleLine, palette(),
                             isEnabled(), text, foregroundRole());
        line.translate(0, lineHeight);
    }
}

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

HotkeyBadge::HotkeyBadge(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFont(badgeFont());
    setAlignment(Qt::AlignCenter);
}

QSize HotkeyBadge::sizeHint() const {
    return measured_.size(text(), font());
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

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixels(size));
    font.setWeight(weight);
    return font;
}

} // namespace hollowfernpike
