#pragma once

#include "ui/icons/Symbols.h"

#include <QAbstractButton>

namespace hollowfernpike {

/// A square button that shows only a symbol, unless the pointer is over it or it has the focus. Tab
/// gives it the focus; a click does not. Return presses it, as Space does. It is 28 wide and high,
/// or larger for large fonts. Main thread only.
class SymbolButton final : public QAbstractButton {
public:
    /// `description` is what a screen reader says of the symbol.
    SymbolButton(Symbol symbol, SymbolTint tint, const QString& description,
                 QWidget* parent = nullptr);

    QSize sizeHint() const override { return minimumSize(); }

private:
    void adoptFont();
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void paintBackground(QPainter& painter) const;
};

} // namespace hollowfernpike
