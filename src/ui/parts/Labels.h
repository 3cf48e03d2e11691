#pragma once

#include <QFont>
#include <QLabel>

namespace hollowfernpike {

/// A line of plain text that gives way when there is no room for it: it wraps into smaller lines if
/// it is allowed to, and ends in an ellipsis where even those do not hold it; then its tool tip
/// tells the whole. Main thread only.
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
};

/// Text that stands back and says what could be here. Main thread only.
class HintLabel final : public QLabel {
public:
    explicit HintLabel(const QString& text, QWidget* parent = nullptr);

private:
    void paintEvent(QPaintEvent* event) override;
};

/// The desktop's font for user interfaces, `size` device-independent pixels high. Main thread only.
QFont systemFont(int size, QFont::Weight weight);

} // namespace hollowfernpike
