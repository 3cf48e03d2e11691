#pragma once

#include <QPushButton>

namespace hollowfernpike {

/// A push button of the large size: at least 30 high, and 16 wider than usual. Main thread only.
class LargeButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override {
        return (QPushButton::sizeHint() + QSize(16, 0)).expandedTo(QSize(0, 30));
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace hollowfernpike
