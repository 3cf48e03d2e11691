#pragma once

#include "ui/parts/Labels.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// What is to be seen of the badge's text: the part of its picture that changes without the text.
inline QImage inkOf(HotkeyBadge& badge) {
    const auto pictureWith = [&](const QString& text) {
        badge.setText(text);
        return badge.grab().toImage();
    };
    const QString text = badge.text();
    const QImage blank = pictureWith({});
    const QImage written = pictureWith(text);
    QRect ink;
    for (int y = 0; y < written.height(); ++y) {
        for (int x = 0; x < written.width(); ++x) {
            if (written.pixel(x, y) != blank.pixel(x, y)) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return written.copy(ink);
}

/// Whether nothing of the badge's text is cut off or left out: with more room it looks the same.
inline testing::AssertionResult showsItsWholeText(HotkeyBadge& badge) {
    const QSize size = badge.size();
    const QImage shown = inkOf(badge);
    badge.resize(3 * size.width() + 100, size.height());
    const QImage whole = inkOf(badge);
    badge.resize(size);
    if (!shown.isNull() && shown == whole) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "of \"" << badge.text().toStdString() << "\", " << whole.width()
           << " device pixels wide, a badge of " << size.width() << " shows " << shown.width();
}

} // namespace hollowfernpike::test
