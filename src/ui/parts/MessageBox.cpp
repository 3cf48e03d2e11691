#include "ui/parts/MessageBox.h"

#include "ui/icons/Symbols.h"

#include <QLabel>
#include <QStyle>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace hollowfernpike {

namespace {

constexpr auto explanationName = "qt_msgbox_informativelabel"; // the toolkit's

/// Lets lines break after 48 characters in text without blanks, such as a path, which would widen
/// the window without bound.
QString breakable(const QString& text) {
    constexpr qsizetype longestRun = 48;
    constexpr QChar zeroWidthSpace(0x200B);
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QString result;
    qsizetype runBegin = 0;
    for (qsizetype at = 0, next = 0; at < text.size(); at = next) {
        next = characters.toNextBoundary();
        breaks.setPosition(at);
        if (breaks.isAtBoundary()) {
            runBegin = at;
        } else if (at - runBegin >= longestRun) {
            result += zeroWidthSpace;
            runBegin = at;
        }
        result += text.sliced(at, next - at);
    }
    return result;
}

/// The toolkit makes an explanation no wider than its message, which may be short. Text that cannot
/// be broken may need more than the widest column.
void giveRoom(QLabel* explanation) {
    constexpr int widestColumn = 320;
    if (explanation != nullptr) {
        const QSize oneLine =
            explanation->fontMetrics().size(Qt::TextSingleLine, explanation->text());
        explanation->setMinimumWidth(std::max(std::min(oneLine.width(), widestColumn),
                                              explanation->minimumSizeHint().width()));
    }
}

} // namespace

MessageBox::MessageBox(QWidget* parent) : QMessageBox(parent) {
    setWindowTitle("Hollowfernpike");
}

// The message last: with each text that is set, the toolkit fits an open box to its contents, and
// by then the explanation has its room.
void MessageBox::setTexts(const QString& message, const QString& explanation) {
    if (auto* previous = findChild<QLabel*>(explanationName)) {
        previous->setMinimumWidth(0);
    }
    setInformativeText(breakable(explanation));
    for (QLabel* label : findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
    }
    giveRoom(findChild<QLabel*>(explanationName));
    setText(breakable(message));
    setAccessibleName(message);
    setAccessibleDescription(explanation);
}

void MessageBox::setHint(const QString& hint) {
    if (auto* explanation = findChild<QLabel*>(explanationName)) {
        explanation->setToolTip(hint.toHtmlEscaped());
        explanation->setAccessibleDescription(hint);
    }
}

void MessageBox::setPicture(Icon kind, const QIcon& own) {
    if (!own.isNull()) {
        setIconPixmap(pictureOf(own));
        return;
    }
    setIcon(kind);
    const bool warns = kind == Warning;
    if (!QIcon::hasThemeIcon(warns ? "dialog-warning" : "dialog-information")) {
        replacePicture(symbolImage(warns ? Symbol::exclamationmarkTriangle : Symbol::infoCircle));
    }
}

QPixmap MessageBox::pictureOf(const QIcon& icon) const {
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    return icon.pixmap(QSize(side, side), devicePixelRatioF());
}

/// Replaces the toolkit's own picture, which is coarse.
void MessageBox::replacePicture(const QIcon& icon) {
    for (QLabel* label : findChildren<QLabel*>()) {
        if (!label->pixmap(Qt::ReturnByValue).isNull()) {
            label->setPixmap(pictureOf(icon));
        }
    }
}

} // namespace hollowfernpike
