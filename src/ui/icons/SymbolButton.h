#pragma once

#include "ui/icons/Symbols.h"

#include <QAbstractButton>

namespace hollowfernpike {

/// A square button that shows nothing but a symbol until the pointer or the keyboard comes to it.
/// The keyboard reaches it with Tab; a click does not take the focus away from where it is. Main
/// thread only.
class SymbolButton final : public QAbstractButton {
public:
    static constexpr int side = 28; ///< of the button

    /// `description` is what a screen reader says of the symbol.
    SymbolButton(Symbol symbol, SymbolTint tint, const QString& description,
                 QWidget* parent = nullptr);

    QSize sizeHint() const override { return {side, side}; }

private:
    void paintEvent(QPaintEvent* event) override;
    void paintBackground(QPainter& painter) const;
};

} // namespace hollowfernpike
