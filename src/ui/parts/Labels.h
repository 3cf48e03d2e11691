#pragma once

#include <QFont>
#include <QLabel>

namespace hollowfernpike {

/// How large a line of text is. Measured again only when the text or its font changes, because that
/// takes most of the time in which a long list is laid out.
class MeasuredText {
public:
    QSize size(const QString& text, const QFont& font);

private:
    QString text_;
    QFont font_;
    QSize size_;
};

/// A line of plain text. If it does not fit, it wraps into smaller lines as far as it may, ends in
/// an ellipsis if that is not enough, and shows the whole text above its own tool tip. Main thread
/// only.
class FittingLabel final : public QLabel {
public:
    explicit FittingLabel(QWidget* parent = nullptr);

    /// One unless told otherwise.
    void setMaximumLineCount(int count);

    /// How large the text is in one line.
    QSize sizeHint() const override;

    /// What is painted, line by line.
    QStringList shownLines() const;

private:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    bool fitsInOneLine() const;
    QFont fontForLines() const;

    int maximumLineCount_ = 1;
    mutable MeasuredText measured_;
};

/// Text in the secondary colour that says what could be here. Main thread only.
class HintLabel final : public QLabel {
public:
    explicit HintLabel(const QString& text, QWidget* parent = nullptr);

private:
    void paintEvent(QPaintEvent* event) override;
};

/// A key combination in the accent's colour on a tint of it. Main thread only.
class HotkeyBadge final : public QLabel {
public:
    explicit HotkeyBadge(QWidget* parent = nullptr);

    QSize sizeHint() const override;

private:
    void paintEvent(QPaintEvent* event) override;

    mutable MeasuredText measured_;
};

/// The desktop's font for user interfaces, `size` device-independent pixels high if that font has a
/// usual size, else in proportion. Main thread only.
QFont systemFont(int size, QFont::Weight weight);

} // namespace hollowfernpike
